import QtQuick
import Vorle
import Vorle.Models

// The panels' place over the window: read once the window stands, or when one is asked for before.
Later {
    id: place

    required property Shell shell
    readonly property PanelHost host: item as PanelHost
    readonly property bool shown: host !== null && host.shown

    signal gone
    signal added
    signal found(int section, string topicId)
    signal quitAsked
    signal sectionAsked(int section)
    signal acted(int action)

    function ready(): PanelHost {
        need();
        return item as PanelHost;
    }
    function open(panel: int) {
        ready().open(panel);
    }
    function isShown(panel: int): bool {
        return host !== null && host.isShown(panel);
    }
    function close() {
        host?.close();
    }
    function anyShown(): bool {
        return host !== null && host.anyShown();
    }
    function correct(topicId: string) {
        ready().correct(topicId);
    }
    function showDecisions(reflex: reflexRow) {
        ready().showDecisions(reflex);
    }

    document: "Panels.qml"
    given: ({ shell: shell })
    soon: true

    Connections {
        target: place.host

        function onGone() {
            place.gone();
        }
        function onAdded() {
            place.added();
        }
        function onFound(section: int, topicId: string) {
            place.found(section, topicId);
        }
        function onQuitAsked() {
            place.quitAsked();
        }
        function onSectionAsked(section: int) {
            place.sectionAsked(section);
        }
        function onActed(action: int) {
            place.acted(action);
        }
    }
}
