/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The enumerations of GenApi
 */
#pragma once

#include "Base/GCTypes.h"

#ifdef GenApi_EXPORTS
#define GENAPI_API GCBASE_EXPORT
#else
#define GENAPI_API GCBASE_IMPORT
#endif

namespace GenApi {

/// What may be done with a node, a port or a device.
enum EAccessMode {
    NI,                   ///< not implemented
    NA,                   ///< not available
    WO,                   ///< write only
    RO,                   ///< read only
    RW,                   ///< read and write
    _UndefinedAccesMode,  // the standard's own spelling
    _CycleDetectAccesMode
};

enum EVisibility { Beginner = 0, Expert = 1, Guru = 2, Invisible = 3, _UndefinedVisibility = 99 };

enum ECachingMode { NoCache, WriteThrough, WriteAround, _UndefinedCachingMode };

enum ERepresentation {
    Linear,
    Logarithmic,
    Boolean,
    PureNumber,
    HexNumber,
    IPV4Address,
    MACAddress,
    _UndefinedRepresentation
};

enum EDisplayNotation { fnAutomatic, fnFixed, fnScientific, _UndefinedEDisplayNotation };

enum EEndianess { BigEndian, LittleEndian, _UndefinedEndian };

enum ESign { Signed, Unsigned, _UndefinedSign };

enum ESlope { Increasing, Decreasing, Varying, Automatic, _UndefinedESlope };

enum EIncMode { noIncrement, fixedIncrement, listIncrement };

enum ENameSpace { Custom, Standard, _UndefinedNameSpace };

enum EStandardNameSpace { None, GEV, IIDC, CL, USB, _UndefinedStandardNameSpace };

enum EYesNo { Yes = 1, No = 0, _UndefinedYesNo = 2 };

/// The principal interface of a node.
enum EInterfaceType {
    intfIValue,
    intfIBase,
    intfIInteger,
    intfIBoolean,
    intfICommand,
    intfIFloat,
    intfIString,
    intfIRegister,
    intfICategory,
    intfIEnumeration,
    intfIEnumEntry,
    intfIPort
};

/// Which neighbours of a node INode::GetChildren lists.
enum ELinkType {
    ctParentNodes,           ///< nodes that refer to this one
    ctReadingChildren,       ///< nodes that a read may use
    ctWritingChildren,       ///< nodes that a write may use
    ctInvalidatingChildren,  ///< nodes whose change invalidates this one
    ctDependingNodes,        ///< nodes that this one invalidates, directly or through others
    ctTerminalNodes          ///< registers that a write ends in
};

/// When a node callback runs: bits, so that a fire call can ask for both.
enum ECallbackType {
    cbPostInsideLock = 1,   ///< after the change, with the node map's lock held
    cbPostOutsideLock = 2,  ///< after the change, without the lock
    cbAll = 3,
    cbPreInsideLock = 4,  ///< before the change, with the lock held; an exception keeps the change from being made
    cbPreOutsideLock = 8  ///< before the change, without the lock; likewise
};

}  // namespace GenApi
