/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Command: writes a value that starts something
 */
#pragma once

#include "GenApi/ICommand.h"
#include "nodes/SourcedNode.h"
#include "nodes/ValueNode.h"

namespace GenApi {

/// Command: done when what was written is no longer there to be read.
class CCommand final : public CSourcedNode<CValueNode<ICommand, intfICommand>, std::int64_t> {
public:
    using CSourcedNode::CSourcedNode;

    // IValue
    GenICam::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GenICam::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override { return false; }
    // ICommand
    void Execute(bool verify = true) override;
    bool IsDone(bool verify = true) override;

protected:
    void Bind() override;
    std::int64_t ReadInteger(Evaluation& evaluation) override;
    void WriteInteger(std::int64_t value, Evaluation& evaluation) override;
    EAccessMode ReadAccess(Evaluation& evaluation, bool withLocks) override;

private:
    bool ReadDone();

    Operand<std::int64_t> m_command;
    bool m_isRunning = false;
};

}  // namespace GenApi
