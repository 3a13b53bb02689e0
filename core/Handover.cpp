#include "core/Handover.h"

namespace vorle {

namespace {

/// Whether these lines stand in the note, one after the other. Words inside a line say something
/// else there.
bool says(const QString &note, const QString &lines) {
    return (u'\n' + note + u'\n').contains(u'\n' + lines + u'\n');
}

void takeUpNote(Topic &topic, const QString &note) {
    const QString own = topic.note.value_or(QString());
    if (!note.isEmpty() && !says(own, note)) {
        topic.note = own.isEmpty() ? note : own + u'\n' + note;
    }
}

void takeUpTitle(Topic &topic, const QString &title) {
    if (isBeingRead(topic) && !title.isEmpty() && !topic.sources.isEmpty() &&
        topic.sources.first().title.isEmpty()) {
        topic.sources.first().title = title;
        topic.title = title;
    }
}

} // namespace

bool takeUp(Topic &topic, const Handover &handed) {
    const Topic before = topic;
    takeUpNote(topic, handed.note);
    takeUpTitle(topic, handed.title);
    if (topic.status == TopicStatus::Pending || topic.status == TopicStatus::Inbox) {
        if (topic.project.value_or(QString()).isEmpty() && !handed.project.isEmpty()) {
            topic.project = handed.project;
        }
        if (handed.pageText.size() > topic.seenText.value_or(QByteArray()).size()) {
            topic.seenText = handed.pageText;
        }
    }
    return topic != before;
}

} // namespace vorle
