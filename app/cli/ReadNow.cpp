#include "app/cli/ReadNow.h"

#include "base/French.h"

namespace vorle::cli {

Task<> readNow(Context &context, LinkCapture &capture, QUuid id) {
    const OneShot over;
    QString problem;
    QObject scope; // the connections go with it
    QObject::connect(&capture, &LinkCapture::failed, &scope,
                     [&problem, id](const QUuid &which, const QString &text) {
                         problem = which == id ? text : problem;
                     });
    const auto look = [&capture, over, id](const QUuid &which) {
        if (which == id || !capture.running()) {
            over.fire();
        }
    };
    QObject::connect(&capture, &LinkCapture::completed, &scope, look);
    QObject::connect(&capture, &LinkCapture::failed, &scope, look);
    QObject::connect(&capture, &LinkCapture::runningChanged, &scope, [look] { look({}); });
    // What the window asked for goes on without the terminal.
    const auto stop = context.cancel.onCancel([&capture, over, host = context.host] {
        host == Host::OwnProcess ? capture.stop() : over.fire();
    });
    context.console.progress(French::tr("Je lis la page et je la juge…"), 0, 1, QString());
    if (capture.running()) {
        co_await over;
    }
    // A process of its own ends with the command: the picture is waited for.
    if (context.host == Host::OwnProcess) {
        co_await capture.ended();
    }
    context.console.endProgress();
    context.cancel.throwIfCancelled();
    if (capture.state(id) == LinkCapture::State::Failed) { // it may have failed at once
        problem = capture.failureText(id);
    }
    if (!problem.isEmpty()) {
        throw Failure(problem);
    }
}

} // namespace vorle::cli
