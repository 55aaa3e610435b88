// SPDX-License-Identifier: MIT
// Beside pch.h, for what shows windows.
#pragma once

#include <QAbstractListModel>
#include <QQmlEngine>
#include <QtQml/qqml.h>
#include <QtQml/qqmlprivate.h>
