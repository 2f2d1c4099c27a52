/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts in UTF-8
 */
#include "../LocalText.h"

namespace clser_test {

std::string LocalText(const std::string& utf8) {
    return utf8;
}

}  // namespace clser_test
