// SPDX-License-Identifier: MIT
#pragma once

class QQmlEngine;
class Theme;

/// Before the application is made: interface choices that Qt reads only then.
void prepareInterface();

/// Gives `engine` the theme, the symbols and the place of the modules. Once, before it loads;
/// `theme` must outlive it.
void setUpEngine(QQmlEngine& engine, Theme& theme);
