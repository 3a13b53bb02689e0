#include "desktop/LaunchScript.h"

#include "platform/ShellWord.h"

#include <QFileInfo>

namespace vorle {

namespace {

QString commands(const LaunchPlan &plan) {
    const QString prompt = shellWord(plan.promptFile);
    // The trap: a shell whose command dies of an interrupt would go too, and the window with it.
    return QStringLiteral("trap : INT; vorle_prompt=$(command cat ") + prompt +
           QStringLiteral(") && rm -f -- ") + prompt + QStringLiteral(" && cd -- ") +
           shellWord(plan.folder) + QStringLiteral(" && PATH=") +
           shellWord(QFileInfo(plan.agent).path()) + QStringLiteral(":$PATH ") +
           shellWord(plan.agent) + QStringLiteral(" \"$vorle_prompt\"");
}

} // namespace

LaunchTexts launchTexts(const LaunchPlan &plan, const LoginShells &shells) {
    const QString session = QStringLiteral("exec ") + shellWord(shells.session);
    return {QStringLiteral("#!") + shells.script + QStringLiteral(" -l\nrm -f -- \"$0\"\nclear\n") +
                commands(plan) + u'\n' + session + QStringLiteral(" -l\n"),
            QStringLiteral("rm -f -- ") + shellWord(plan.scriptFile) + QStringLiteral("; ") +
                commands(plan) + QStringLiteral("; ") + session + QStringLiteral(" -l")};
}

} // namespace vorle
