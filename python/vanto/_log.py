# SPDX-License-Identifier: Apache-2.0
"""The library's log in logging, under "vanto"."""

from __future__ import annotations

import logging

from vanto import _core

_LEVELS = {256: logging.ERROR, 128: logging.WARNING, 64: logging.INFO, 32: logging.DEBUG, 16: 5}
_followed = ""


class _Logger(logging.Logger):
    """Tells the library when its level changes."""

    def setLevel(self, level: int | str) -> None:
        super().setLevel(level)
        if _followed:
            follow()


def _make_logger() -> logging.Logger:
    before = logging.getLoggerClass()
    logging.setLoggerClass(_Logger)
    try:
        return logging.getLogger("vanto")
    finally:
        logging.setLoggerClass(before)


logger = _make_logger()
logger.addHandler(logging.NullHandler())


def follow() -> None:
    """Have the library log what the level of the logger "vanto" lets through; called by whatever opens cameras."""
    global _followed
    rules = f"*:{_word(logger.getEffectiveLevel())}"
    if rules != _followed:
        _core.follow_log(rules, _sink)
        _followed = rules


def _word(level: int) -> str:
    for theirs, word in ((logging.ERROR, "error"), (logging.WARNING, "warning"), (logging.INFO, "info")):
        if level >= theirs:
            return word
    return "debug" if level >= logging.DEBUG else "trace"


def _name(category: str) -> str:
    return "vanto" + category[5:] if category.lower().startswith("vanto.") else f"vanto.{category}"


def _sink(category: str, level: int, text: str, time: float, thread: int) -> None:
    target = logging.getLogger(_name(category))
    number = _LEVELS.get(level, logging.INFO)
    if not target.isEnabledFor(number):
        return
    record = target.makeRecord(target.name, number, "(vanto)", 0, text, (), None)
    record.created = time
    record.msecs = (time - int(time)) * 1000
    record.thread = thread
    record.threadName = f"thread {thread}"
    target.handle(record)
