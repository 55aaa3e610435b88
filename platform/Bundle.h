// SPDX-License-Identifier: MIT
#pragma once

/// The application's identifier, by which desktop, keychain and bus know it.
#define TINDRA_BUNDLE_ID "app.tindra.Tindra"
/// The class of its windows on X11, which its launcher names.
#define TINDRA_WINDOW_CLASS "Tindra"
