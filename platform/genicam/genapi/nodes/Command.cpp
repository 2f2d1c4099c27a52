/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Command: writes a value that starts something
 */

#include "nodes/Command.h"

#include "Base/GCException.h"
#include "GenApi/AccessMode.h"
#include "core/MapAccess.h"
#include "core/NodeMap.h"
#include "schema/Text.h"

namespace GenApi {

void CCommand::Bind() {
    CSourcedNode::Bind();
    m_command = BindOperand<std::int64_t>(*this, ETag::CommandValue, ETag::pCommandValue);
    if (!m_command.isGiven) {
        m_command.constant = 1;
        Map().Warn(MakeWarning(wkBadValue, "has no command value; 1 is taken"));
    }
}

// The number of a command, for rules and formulas, is what lies behind it.
std::int64_t CCommand::ReadInteger(Evaluation& evaluation) {
    return Source().Read(*this, evaluation);
}

void CCommand::WriteInteger(std::int64_t value, Evaluation& evaluation) {
    const ScopedValue isPassing(evaluation.isPassing, true);
    Source().Write(*this, value, evaluation);
    // What has been written runs, whatever the error node says of it afterwards.
    m_isRunning = true;
    Map().Changed(*this);
}

// A command that can be read can tell whether it is done.
EAccessMode CCommand::ReadAccess(Evaluation& evaluation, bool withLocks) {
    EAccessMode mode = CSourcedNode::ReadAccess(evaluation, withLocks);
    if (m_command.node != nullptr && !IsReadable(m_command.node->Access(evaluation, false)))
        mode = Combine(mode, NA);
    return mode;
}

/**
 * \brief Start what the command stands for
 * \param[in] verify Check ranges of the nodes behind and the error node afterwards
 * \throw AccessException The command can't be executed now
 *
 * \context Any thread
 */
void CCommand::Execute(bool verify) {
    Map().Change(this, [&] {
        RequireWritable();
        Evaluation evaluation;
        evaluation.verify = verify;
        const std::int64_t value = m_command.Read(evaluation);
        AssignInteger(value, evaluation);
    });
}

/**
 * \brief Whether the command has been carried out
 *
 * Asks the device. When a running command turns out to be done, the node and what depends on it are announced.
 *
 * \throw AccessException The command is not available
 *
 * \context Any thread
 */
bool CCommand::IsDone(bool) {
    bool done = false;
    bool isNews = false;
    {
        const MapAccess access(Map());
        done = ReadDone();
        isNews = done && m_isRunning;
        if (isNews)
            m_isRunning = false;
    }
    if (isNews)
        Map().Change(this, [this] { Map().Changed(*this); });
    return done;
}

// What was written is no longer there. What can't be read back is taken as done, and so is a command value of 0: it is
// what a register shows that has nothing to do, so it can't tell that something runs.
bool CCommand::ReadDone() {
    Evaluation evaluation;
    const EAccessMode mode = Access(evaluation, false);
    if (!IsAvailable(mode))
        ThrowAccess("available");
    if (!IsReadable(mode))
        return true;
    // A constant behind the command is nothing that clears itself.
    const std::int64_t command = m_command.Read(evaluation);
    if (command == 0 || Source().Target(*this, evaluation) == nullptr)
        return true;
    evaluation.ignoreCache = true;
    return Integer(evaluation) != command;
}

GenICam::gcstring CCommand::ToString(bool verify, bool) {
    return IsDone(verify) ? "1" : "0";
}

/// "1" executes, "0" does nothing: a command saved as a text has one of both.
void CCommand::FromString(const GenICam::gcstring& text, bool verify) {
    const std::string_view word = Trimmed(text.view());
    if (word == "1" || word == "true")
        return Execute(verify);
    if (word != "0" && word != "false")
        throw INVALID_ARGUMENT_EXCEPTION("%s: '%s' is neither true nor false", Label(), text);
}

}  // namespace GenApi
