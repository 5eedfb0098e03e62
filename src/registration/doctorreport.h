#pragma once

#include "doctor.h"

#include <QString>

/// Formats the doctor's findings.
class DoctorReport {
public:
    explicit DoctorReport(const Doctor &doctor) : m_doctor(doctor) { }

    /// A line for each link, for a terminal.
    QString text() const;
    /**
     * {"version": text, "downloadWouldArrive": bool, "chains": [{"subject", "browser", "title",
     * "links": [{"link", "state", "text", "cure"}]}]}; the states are "ok", "broken" and "not
     * checked". Safe to share: the user's name and folders are left out.
     */
    QString json() const;

private:
    const Doctor &m_doctor;
};
