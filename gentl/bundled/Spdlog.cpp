/* SPDX-License-Identifier: Apache-2.0 */
/*
 * spdlog's own functions, made of its headers: what is in the producer's file can't be taken for a consumer's of that
 * name
 */
#include <spdlog/common-inl.h>
#include <spdlog/details/log_msg-inl.h>
#include <spdlog/details/os-inl.h>
#include <spdlog/pattern_formatter-inl.h>
#include <spdlog/sinks/base_sink-inl.h>
#include <spdlog/sinks/sink-inl.h>
#include <spdlog/sinks/stdout_sinks-inl.h>

#include <mutex>

template class SPDLOG_API spdlog::sinks::base_sink<std::mutex>;
template class SPDLOG_API spdlog::sinks::stdout_sink_base<spdlog::details::console_mutex>;
template class SPDLOG_API spdlog::sinks::stderr_sink<spdlog::details::console_mutex>;
