/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The comparison that counts: each figure from processes that do nothing else
 */
#pragma once

#include <string>

namespace genapibench {

/// Measures one engine with one description in this process and prints the figures for PrintTable to read.
int MeasureOne(const std::string& task);

/**
 * \brief Print how many times as good as the other engine each work is
 * \param[in] program This program, which is started once for each figure
 *
 * The engines take turns, each in a fresh process that has warmed up; figures are medians of five processes. Loading
 * and freeing are measured apart, and memory is that of the first load.
 */
int PrintTable(const std::string& program);

}  // namespace genapibench
