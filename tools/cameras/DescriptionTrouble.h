/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Why a camera's description can't be had, in the words of those who know
 */
#pragma once

#include <functional>
#include <string>

namespace tools {

/**
 * \brief Run something that has the transport layer read a camera's description
 * \param[in] camera The camera's name
 * \throw ToolError The description can't be had: the log's reason, which the layer's own exception leaves out
 * \throw std::exception Anything else that \a action throws
 */
void ReadDescription(const std::string& camera, const std::function<void()>& action);

}  // namespace tools
