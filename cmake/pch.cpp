// SPDX-License-Identifier: MIT
// The precompiled header needs one translation unit that owns it.
