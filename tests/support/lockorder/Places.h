/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where in which file calls stand
 */
#pragma once

namespace lockorder {

void WritePlaces(int file, void* const* calls, int count);

}  // namespace lockorder
