/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The clocks of Boost, made of its headers: what is in the producer's file can't be taken for a consumer's of that name
 */
#define BOOST_CHRONO_SOURCE
#define BOOST_CHRONO_STATIC_LINK
#include <boost/chrono/detail/inlined/chrono.hpp>
