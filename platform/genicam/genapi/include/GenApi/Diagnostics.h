/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the loader tells about a faulty description
 */
#pragma once

#include <functional>
#include <vector>

#include "Base/GCString.h"
#include "GenApi/Types.h"

namespace GenApi {

/// What kind of fault a warning is about.
enum EWarningKind {
    wkSyntax,             ///< the XML text itself
    wkNameSpace,          ///< name space or schema version
    wkUnknownElement,     ///< an element that the schema lacks
    wkUnknownAttribute,   ///< an attribute that the schema lacks
    wkDanglingReference,  ///< a reference to a node that does not exist
    wkDuplicateName,      ///< a second node of one name
    wkBadValue,           ///< a value that does not parse
    wkUnusableNode,       ///< a node that can't work: wrong type of a reference, circle, formula
    wkCache               ///< a callback or cache rule that was broken at run time
};

/// One fault of a description that did not keep it from being loaded.
struct Warning {
    EWarningKind Kind = wkSyntax;  ///<  what kind of fault
    GenICam::gcstring File;        ///< file name, or the device name for a text
    std::uint32_t Line = 0;        ///< from 1; 0 when it has no place
    std::uint32_t Column = 0;      ///<  from 1; 0 when it has no place
    GenICam::gcstring Node;        ///< name of the node, may be empty
    GenICam::gcstring Message;     ///<  what is wrong, and what was done about it
};

using WarningList_t = std::vector<Warning>;
using WarningSink_t = std::function<void(const Warning&)>;

/// Sets where warnings of all node maps go, an empty sink for nowhere. The sink runs on the thread that loads or uses
/// the node map and must not use that node map. Thread-safe.
GENAPI_API void SetWarningSink(WarningSink_t sink);

}  // namespace GenApi
