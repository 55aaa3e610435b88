// SPDX-License-Identifier: MIT
#include "ui/settings/AboutTindra.h"

#include "TindraVersion.h"
#include "platform/Desktop.h"

AboutTindra::AboutTindra(Desktop& desktop, Sources sources)
    : m_desktop(desktop), m_sources(std::move(sources)) {}

QString AboutTindra::version() const {
    return QStringLiteral(TINDRA_VERSION);
}

void AboutTindra::open() {
    m_copied = false;
    Q_EMIT changed();
}

void AboutTindra::copyDiagnosis() {
    m_desktop.copy(m_sources.diagnosis());
    m_copied = true;
    Q_EMIT changed();
}
