/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A source for targets that only precompile a header
 */
