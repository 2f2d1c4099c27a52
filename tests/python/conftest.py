# SPDX-License-Identifier: Apache-2.0
"""What tests of vanto share: simulated cameras, and small images."""

import pytest
import vanto


@pytest.fixture(scope="module")
def simulation():
    with vanto.simulate(2) as cameras:
        yield cameras


@pytest.fixture
def camera(simulation):
    with vanto.open("SIM00001") as opened:
        opened.PixelFormat = "Mono8"
        opened.Width = 64
        opened.Height = 32
        yield opened


@pytest.fixture
def own():
    """A simulated camera that a test may unplug."""
    with vanto.simulate(1) as cameras:
        yield cameras
