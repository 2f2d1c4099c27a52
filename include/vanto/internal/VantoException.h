/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Exceptions with the name of their source: throw VANTO_EXCEPTION(RuntimeException, kSource)("...", ...)
 */
#pragma once

#include "Base/GCException.h"

#define VANTO_EXCEPTION(Type, source) GenICam::ExceptionReporter<GenICam::Type>(source, __LINE__, #Type).Report
