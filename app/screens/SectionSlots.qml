import QtQuick
import Vorle
import Vorle.Models

// The six sections, one in view. Each is made when it is first gone to.
FocusScope {
    id: sections

    required property Shell shell
    required property real inboxRoom // over and under what stands in "À trier"
    readonly property list<SectionSlot> slots: [inbox, program, reserve, library, territory, report]
    readonly property SectionScreen screen: slots[shell.sections.current].screen

    signal act(int action)
    signal panelAsked(int panel) // PanelHost.Panel
    signal decisionsAsked(reflexRow reflex)
    signal told(string sentence)

    SectionSlot {
        id: inbox
        shell: sections.shell
        number: Section.Inbox
        onAct: action => sections.act(action)
        sourceComponent: TopicScreen {
            shell: sections.shell
            number: Section.Inbox
            // In a low window the room is the open card's.
            header: Later {
                width: parent.width
                visible: needed
                document: "onboarding/InboxInvitation.qml"
                given: ({ place: sections })
                onVisibleChanged: if (!visible && activeFocus) sections.screen?.focusContent()
                needed: sections.inboxRoom >= 620 && (sections.shell.onboarding.unfinished || sections.shell.calibration.proposed)
            }
        }
    }
    SectionSlot {
        id: program
        shell: sections.shell
        number: Section.Program
        onAct: action => sections.act(action)
        sourceComponent: TopicScreen {
            shell: sections.shell
            number: Section.Program
            header: Later {
                width: parent.width
                visible: needed
                document: "../controls/charts/BudgetBar.qml"
                given: ({ model: sections.shell.budget })
                needed: sections.shell.program.count > 0 || sections.shell.budget.done > 0
            }
        }
    }
    SectionSlot {
        id: reserve
        shell: sections.shell
        number: Section.Reserve
        onAct: action => sections.act(action)
        sourceComponent: TopicScreen {
            shell: sections.shell
            number: Section.Reserve
        }
    }
    SectionSlot {
        id: library
        shell: sections.shell
        number: Section.Library
        onAct: action => sections.act(action)
        sourceComponent: TopicScreen {
            shell: sections.shell
            number: Section.Library
        }
    }
    SectionSlot {
        id: territory
        shell: sections.shell
        number: Section.Territory
        document: "territory/TerritoryScreen.qml"
        onAct: action => sections.act(action)
        onPanelAsked: panel => sections.panelAsked(panel)
        onDecisionsAsked: reflex => sections.decisionsAsked(reflex)
        onTold: sentence => sections.told(sentence)
    }
    SectionSlot {
        id: report
        shell: sections.shell
        number: Section.Report
        document: "report/ReportScreen.qml"
        onAct: action => sections.act(action)
    }
}
