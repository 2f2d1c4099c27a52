# SPDX-License-Identifier: Apache-2.0
"""Callbacks that stay registered until they are cancelled or their camera is closed."""

from __future__ import annotations

import contextlib
import weakref
from collections.abc import Callable
from types import TracebackType

from vanto import _core
from vanto._errors import CameraClosed


class Subscription:
    """A callback that is registered until it is cancelled or its camera is closed; as a context manager until its end.

    The library holds it weakly: a callback that uses its camera does not keep it open.
    """

    def __init__(self, owner: set[Subscription], callback: Callable[[], object]) -> None:
        """Make a subscription that belongs to a camera's."""
        self._owner = owner
        self._callback = callback
        self._core: _core.Subscription | None = None

    @classmethod
    def register(
        cls,
        owner: set[Subscription],
        callback: Callable[[], object],
        register: Callable[[Callable[[], None]], _core.Subscription],
    ) -> Subscription:
        """Have something of the library call a callback."""
        self = cls(owner, callback)
        self._core = register(_Weakly(self))
        owner.add(self)
        return self

    @property
    def is_active(self) -> bool:
        """Whether it was not cancelled yet."""
        return self._core is not None and self._core.is_active()

    def cancel(self) -> None:
        """End it. When this returns, no other thread runs the callback any more. Does nothing the second time."""
        self._owner.discard(self)
        if self._core is not None:
            self._core.cancel()

    def __enter__(self) -> Subscription:
        """Give itself."""
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        """End it."""
        self.cancel()

    def __repr__(self) -> str:
        """Whose callback it is."""
        return f"<Subscription {self._callback!r}{'' if self.is_active else ', cancelled'}>"


class _Weakly:
    """Calls the callback of a subscription as long as that is there."""

    def __init__(self, subscription: Subscription) -> None:
        self._subscription = weakref.ref(subscription)

    def __call__(self) -> None:
        subscription = self._subscription()
        if subscription is not None:
            with contextlib.suppress(CameraClosed):  # somebody closed it meanwhile, who needs not be told
                subscription._callback()

    def __repr__(self) -> str:
        return repr(self._subscription())
