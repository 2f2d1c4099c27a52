# SPDX-License-Identifier: Apache-2.0
"""The library's log arrives in logging."""

import logging
import threading

import pytest
import vanto


class Kept(logging.Handler):
    def __init__(self):
        super().__init__()
        self.messages = []
        self.arrived = threading.Condition()

    def emit(self, record):
        with self.arrived:
            self.messages.append(record)
            self.arrived.notify_all()

    def wait_for(self, text):
        """The first message with a text."""
        with self.arrived:
            assert self.arrived.wait_for(lambda: any(text in record.getMessage() for record in self.messages), 30)
        return next(record for record in self.messages if text in record.getMessage())


@pytest.fixture
def kept():
    handler = Kept()
    logger = logging.getLogger("vanto")
    logger.addHandler(handler)
    yield handler
    logger.removeHandler(handler)
    logger.setLevel(logging.NOTSET)


def test_messages_arrive_below_vanto(simulation, kept):
    logging.getLogger("vanto").setLevel(logging.DEBUG)
    with vanto.open("SIM00001"):
        pass
    record = kept.wait_for("Successfully opend CLPort")
    assert (record.name, record.levelno) == ("vanto.CLSer.TL", logging.DEBUG)
    assert kept.wait_for("' opened").levelno == logging.INFO
    assert kept.wait_for("Found camera").name == "vanto.GenICam.CLProtocol.Driver"


def test_messages_have_the_time_and_the_thread_at_which_they_were_logged(simulation, kept):
    logging.getLogger("vanto").setLevel(logging.INFO)
    import time

    before = time.time()
    vanto.open("SIM00001").close()
    record = kept.wait_for("' opened")
    assert before - 1 < record.created < time.time() + 1 and record.thread


def test_only_what_the_level_lets_through_is_logged(simulation, kept):
    logging.getLogger("vanto").setLevel(logging.INFO)
    vanto.open("SIM00001").close()
    kept.wait_for("' opened")
    assert all(record.levelno >= logging.INFO for record in kept.messages)


def test_a_level_that_changes_counts_at_once(simulation, kept):
    with vanto.open("SIM00001") as camera:
        logging.getLogger("vanto").setLevel(logging.DEBUG)
        camera.close()
    kept.wait_for("Closed CLPort")


def test_a_level_of_the_root_counts_from_the_next_opening_on(simulation, kept):
    root = logging.getLogger()
    before = root.level
    try:
        root.setLevel(logging.INFO)
        vanto.open("SIM00001").close()
        kept.wait_for("' opened")
    finally:
        root.setLevel(before)


def test_a_handler_may_use_cameras(simulation, kept):
    logging.getLogger("vanto").setLevel(logging.DEBUG)
    widths = []

    class Uses(logging.Handler):
        def emit(self, record):
            if not widths and "Restored" not in record.getMessage():
                widths.append(None)
                widths[0] = camera.Width

    handler = Uses()
    with vanto.open("SIM00001") as camera:
        logging.getLogger("vanto").addHandler(handler)
        try:
            with pytest.raises(vanto.Error):
                vanto.open("SIM00001")
            kept.wait_for("GetPortIDs")
            while not widths or widths[0] is None:
                pass
        finally:
            logging.getLogger("vanto").removeHandler(handler)
    assert widths == [2048]
