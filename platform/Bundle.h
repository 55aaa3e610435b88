// SPDX-License-Identifier: MIT
#pragma once

/// The application's identifier, by which desktop, keychain and bus know it.
#define TINDRA_BUNDLE_ID "app.tindra.Tindra"
