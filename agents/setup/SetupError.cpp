#include "agents/setup/SetupError.h"

namespace vorle {

SetupError::SetupError(Case kind, const QString &description)
    : m_case(kind), m_description(description), m_utf8(description.toUtf8()) {}

SetupError SetupError::download() { return {Case::Download, QStringLiteral("download failed")}; }

SetupError SetupError::stepFailed(const QString &step) {
    return {Case::StepFailed, step + QStringLiteral(" failed")};
}

SetupError SetupError::notSigned() {
    return {Case::NotSigned, QStringLiteral("not signed by OpenAI")};
}

SetupError SetupError::noNpm() { return {Case::NoNpm, QStringLiteral("npm not found")}; }

SetupError SetupError::npmDoesNotRun() {
    return {Case::NpmDoesNotRun, QStringLiteral("npm does not run")};
}

SetupError SetupError::underWay() {
    return {Case::UnderWay, QStringLiteral("another process installs")};
}

} // namespace vorle
