// SPDX-License-Identifier: MIT
#include "ui/settings/AboutTindra.h"

#include "platform/Desktop.h"

AboutTindra::AboutTindra(Desktop& desktop, Sources sources)
    : m_desktop(desktop), m_sources(std::move(sources)) {}

void AboutTindra::open() {
    m_copied = false;
    Q_EMIT changed();
}

void AboutTindra::copyDiagnosis() {
    m_desktop.copy(m_sources.diagnosis());
    m_copied = true;
    Q_EMIT changed();
}
