#pragma once

#include "app/triage/Calibration.h"

#include <QString>

namespace vorle {

/// What the guided first triage says, in French, in the window and the terminal alike. Pure
/// functions, any thread.
struct CalibrationText {
    QString title;
    QString text;
};
/// What proposes it: `total` topics are going to be asked about.
CalibrationText calibrationInvitation(qsizetype total);
/// The question under a topic, and the one about its score.
QString calibrationQuestion();
QString calibrationScoreQuestion();
/// "Comme moi.", "J’avais mis 6.": the app's own score of a topic, once the person gave theirs.
QString besideMineText(int theirs, int mine);
/// "3 sur 10": the place of the topic that is asked about.
QString calibrationPosition(const Calibration::Progress &progress);
/// What is said once it is over, with how many were answered; when nothing is there to ask; when
/// it was skipped.
CalibrationText calibrationEnd(qsizetype answered);
QString calibrationNothingText();
QString calibrationSkippedText();

} // namespace vorle
