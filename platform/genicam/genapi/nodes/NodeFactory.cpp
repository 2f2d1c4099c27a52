/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Makes the node of a kind
 */

#include "nodes/NodeFactory.h"

#include "core/Port.h"
#include "nodes/Boolean.h"
#include "nodes/Command.h"
#include "nodes/Enumeration.h"
#include "nodes/FormulaNodes.h"
#include "nodes/RegisterNodes.h"
#include "nodes/SimpleNodes.h"

namespace GenApi {

CNode* MakeNode(const NodeSeed& seed, Arena& arena) {
    switch (seed.description->Node(seed.index).kind) {
        case ENodeKind::Category:
            return arena.New<CCategory>(seed);
        case ENodeKind::Integer:
            return arena.New<CInteger>(seed);
        case ENodeKind::IntReg:
        case ENodeKind::MaskedIntReg:
        case ENodeKind::StructEntry:
            return arena.New<CIntReg>(seed);
        case ENodeKind::IntConverter:
            return arena.New<CIntConverter>(seed);
        case ENodeKind::IntSwissKnife:
            return arena.New<CIntSwissKnife>(seed);
        case ENodeKind::Float:
            return arena.New<CFloat>(seed);
        case ENodeKind::FloatReg:
            return arena.New<CFloatReg>(seed);
        case ENodeKind::Converter:
            return arena.New<CConverter>(seed);
        case ENodeKind::SwissKnife:
            return arena.New<CSwissKnife>(seed);
        case ENodeKind::Enumeration:
            return arena.New<CEnumeration>(seed);
        case ENodeKind::EnumEntry:
            return arena.New<CEnumEntry>(seed);
        case ENodeKind::Boolean:
            return arena.New<CBoolean>(seed);
        case ENodeKind::Command:
            return arena.New<CCommand>(seed);
        case ENodeKind::String:
            return arena.New<CString>(seed);
        case ENodeKind::StringReg:
            return arena.New<CStringReg>(seed);
        case ENodeKind::Register:
        case ENodeKind::ConfRom:
        case ENodeKind::AdvFeatureLock:
        case ENodeKind::SmartFeature:
            return arena.New<CRegister>(seed);
        case ENodeKind::Port:
            return arena.New<CPort>(seed);
        case ENodeKind::TextDesc:
            return arena.New<CTextDesc>(seed);
        case ENodeKind::IntKey:
            return arena.New<CIntKey>(seed);
        default:
            return arena.New<CPlainNode>(seed);
    }
}

}  // namespace GenApi
