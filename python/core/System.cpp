/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What is not about one camera: the end of the interpreter, forks, the log, folders
 */
#include <pybind11/pybind11.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Bindings.h"
#include "Callback.h"
#include "Dispatcher.h"
#include "OpenCameras.h"
#include "Values.h"
#include "vanto/LogListener.h"
#include "vanto/VantoFolders.h"

namespace python {

namespace {

using Vanto::tracelog::LogMessage;
using Vanto::tracelog::LogSubscription;

// Exchanged with the GIL held, destroyed without.
std::unique_ptr<LogSubscription>& FollowedLog() {
    static auto* const log = new std::unique_ptr<LogSubscription>;
    return *log;
}

double SecondsOf(std::chrono::system_clock::time_point time) {
    return std::chrono::duration<double>(time.time_since_epoch()).count();
}

/// Hands a message on to a function of the module; it stays alive as long as the module.
void Tell(const py::handle& sink, const LogMessage& message) {
    Dispatcher::Instance().Post(
        [sink, message, time = SecondsOf(std::chrono::system_clock::now()), thread = ThreadOfProgram()] {
            try {
                sink(ToPython(message.category), message.level, ToPython(message.text), time, thread);
            } catch (py::error_already_set& error) {
                error.discard_as_unraisable(py::reinterpret_borrow<py::object>(sink));
            }
        });
}

/// Has messages come to a function from now on; no rules: none do.
void FollowLog(const std::string& rules, const py::function& function) {
    std::unique_ptr<LogSubscription> before;
    std::unique_ptr<LogSubscription> next;
    const py::handle sink = py::object(function).release();
    WithoutGil([&] {
        if (!rules.empty())
            next = std::make_unique<LogSubscription>([sink](const LogMessage& message) { Tell(sink, message); }, rules);
    });
    before = std::exchange(FollowedLog(), std::move(next));
    WithoutGil([&] { before.reset(); });
}

/// Closes what is open and waits until nobody of the library's side wants the interpreter any more.
void ShutDown() {
    constexpr std::chrono::seconds kPatience(10);
    if (IsForked() || !Gate::Instance().WasUsed())
        return;
    std::unique_ptr<LogSubscription> log = std::exchange(FollowedLog(), nullptr);
    const py::gil_scoped_release released;
    OpenCameras::Instance().CloseAll();
    log.reset();
    Dispatcher::Instance().Stop();
    Gate::Instance().Close();
    OpenCameras::Instance().CloseAll();
    Gate::Instance().WaitUntilEmpty(kPatience);
    OpenCameras::Instance().CloseAll();
}

py::str Folder(int type) {
    return ToPython(Vanto::getVantoFolderPath(static_cast<Vanto::eFolderType>(type)).str());
}

}  // namespace

void BindSystem(py::module_& module) {
    module.def("follow_log", FollowLog, py::arg("rules"), py::arg("sink"));
    module.def("shut_down", ShutDown);
    module.def("note_fork", NoteFork);
    module.def("folder", Folder, py::arg("type"));
}

}  // namespace python
