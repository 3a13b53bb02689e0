# The screens: one QML module, whose files stand in theme/, controls/ and screens/, and the C++ that
# shows them.
find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Widgets Qml Quick)

set(VORLE_QML
    theme/Look.qml theme/Theme.qml
    controls/ActionButton.qml controls/AgentSetupTile.qml controls/charts/BarGroups.qml controls/reading/BriefPart.qml controls/charts/BudgetBar.qml controls/CardDetails.qml controls/CardHead.qml controls/CardText.qml
    controls/reading/ChangeRow.qml controls/charts/ChartBar.qml controls/charts/CostCard.qml controls/charts/Figure.qml controls/charts/FigureCard.qml controls/charts/LegendMark.qml
    controls/charts/PeriodChoice.qml controls/charts/ReportScope.qml controls/charts/ShareStack.qml controls/charts/SourceBars.qml controls/charts/TimeBars.qml
    controls/Chapter.qml controls/Chip.qml controls/charts/CriterionBar.qml controls/EmptyState.qml
    controls/FocusRing.qml controls/GearSign.qml controls/FoundProject.qml controls/GhostLine.qml controls/HintLine.qml controls/InSight.qml controls/Invitation.qml controls/KeyCap.qml controls/KeyHint.qml controls/MenuRow.qml
    controls/Label.qml controls/ListHeading.qml controls/Mascot.qml controls/NoteEditor.qml controls/Panel.qml
    controls/ProjectChoice.qml controls/ProposedPage.qml controls/reading/ReadingFoot.qml controls/reading/ReadingHead.qml controls/reading/ReadingPlace.qml controls/reading/ReadingTitle.qml controls/RunStatus.qml controls/ScoreBadge.qml controls/ScoreDigits.qml controls/ScrollLine.qml controls/SearchButton.qml
    controls/SectionHead.qml controls/reading/SeenText.qml controls/Segments.qml controls/SelectableText.qml controls/SideButton.qml controls/SideItem.qml controls/SortedBadges.qml
    controls/AddField.qml controls/AppTile.qml controls/charts/ChartFrame.qml controls/charts/ChartGroup.qml controls/EditableRow.qml controls/OrphanLine.qml controls/CrossButton.qml controls/InterestRow.qml controls/LetterTile.qml controls/PageSection.qml controls/Pill.qml controls/PillAdder.qml
    controls/PillButton.qml controls/ProjectCard.qml controls/RadiusChoice.qml controls/Rows.qml controls/UndoLine.qml controls/WeightDots.qml
    controls/reading/SourceRow.qml controls/SourcePicture.qml controls/StepLine.qml controls/TextEntry.qml
    controls/SchedulePicker.qml controls/Stepper.qml controls/SettingRow.qml controls/SettingsPage.qml controls/ShortcutField.qml controls/Swatches.qml controls/Switch.qml controls/TimeField.qml controls/Title.qml
    controls/reading/BriefCard.qml controls/reading/CodeBlock.qml controls/reading/CopyButton.qml controls/reading/FoldLine.qml
    controls/TopicCard.qml controls/VersionLine.qml controls/WhyLine.qml
    screens/Actions.qml screens/AddLink.qml screens/Banner.qml screens/BriefView.qml screens/onboarding/CalibrationPanel.qml screens/CardMenu.qml screens/CardSight.qml
    screens/territory/AppLine.qml screens/territory/AppPicker.qml screens/ConfirmPanel.qml screens/territory/DecisionsPanel.qml screens/territory/InterestRows.qml screens/territory/ListSection.qml
    screens/ClosingPanel.qml screens/FeedbackPanel.qml screens/FeedbackPictures.qml screens/onboarding/DemoStrip.qml screens/CorrectionPanel.qml
    screens/onboarding/InboxInvitation.qml screens/GhostPlace.qml screens/LastGhost.qml screens/Later.qml screens/LinkDrop.qml screens/ListBar.qml screens/ListScreen.qml screens/Main.qml screens/NotchPanel.qml 
    screens/onboarding/OnboardingAgent.qml screens/onboarding/OnboardingProjects.qml screens/onboarding/OnboardingScreen.qml screens/onboarding/OnboardingStep.qml screens/onboarding/OnboardingTopics.qml
    screens/onboarding/OnboardingWhen.qml screens/onboarding/OnboardingYou.qml screens/PanelHost.qml screens/PanelSlot.qml screens/PanelsLater.qml screens/Panels.qml screens/QuickCapturePanel.qml screens/ReadingPage.qml
    screens/report/ReportFigures.qml screens/report/ReportHead.qml screens/report/ReportRow.qml screens/report/ReportScreen.qml screens/SectionScreen.qml screens/SectionSlot.qml screens/SectionSlots.qml screens/settings/SettingsPanel.qml
    screens/settings/BenchScreen.qml screens/settings/SettingsAgent.qml screens/settings/SettingsCapture.qml screens/settings/SettingsData.qml screens/settings/SettingsGeneral.qml screens/settings/SettingsMenu.qml screens/settings/SettingsNotices.qml screens/settings/SettingsRuns.qml
    screens/palette/PaletteFoot.qml screens/palette/PaletteRow.qml screens/palette/SearchOverlay.qml
    screens/ShortcutSheet.qml screens/SideBar.qml screens/StatusPanel.qml screens/territory/SendPanel.qml screens/territory/TerritoryInterests.qml screens/territory/TerritoryNames.qml screens/territory/TerritoryProjects.qml
    screens/territory/TerritoryReflex.qml screens/territory/TerritoryReflexes.qml screens/territory/TerritoryScreen.qml screens/territory/TerritorySite.qml screens/territory/TerritorySites.qml
    screens/TopicList.qml screens/TopicMenu.qml screens/TopicReading.qml screens/TopicRow.qml screens/TopicsEnd.qml screens/TopicScreen.qml screens/UpdatePanel.qml screens/Voice.qml screens/WaitingScreen.qml screens/Word.qml)
set_source_files_properties(theme/Theme.qml PROPERTIES QT_QML_SINGLETON_TYPE TRUE)

qt_add_qml_module(vorle_window
    URI Vorle
    VERSION 1.0
    STATIC
    RESOURCE_PREFIX /qt/qml
    IMPORTS QtQuick Vorle.Models
    OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/qml/Vorle
    QML_FILES ${VORLE_QML}
    SOURCES
        window/Announcer.cpp window/Announcer.h
        window/desktop/CaptureNotices.cpp window/desktop/CaptureNotices.h
        window/desktop/CaptureShortcut.cpp window/desktop/CaptureShortcut.h
        window/CommandServer.cpp window/CommandServer.h
        window/desktop/AddressEvents.cpp window/desktop/AddressEvents.h
        window/AccessibilityBarrier.cpp window/AccessibilityBarrier.h
        window/AccessibleParts.cpp window/AccessibleParts.h
        window/AppIcons.cpp window/AppIcons.h
        window/BriefMarks.cpp window/BriefMarks.h
        window/DemoProcess.cpp window/DemoProcess.h
        window/Entering.cpp window/Entering.h
        window/desktop/FeedbackModel.cpp window/desktop/FeedbackModel.h
        window/Fonts.cpp window/Fonts.h
        window/Gui.cpp window/Gui.h
        window/KeyRepeatFilter.cpp window/KeyRepeatFilter.h
        window/Listening.h
        window/MainWindow.cpp window/MainWindow.h
        window/OpenApp.cpp window/OpenApp.h
        window/MenuBar.cpp window/MenuBar.h
        window/MenuTarget.cpp window/MenuTarget.h
        window/Opening.cpp window/Opening.h
        window/pictures/PictureFile.cpp window/pictures/PictureFile.h
        window/pictures/DecodingDevice.cpp window/pictures/DecodingDevice.h
        window/pictures/SourcePictures.cpp window/pictures/SourcePictures.h
        window/items/Press.cpp window/items/Press.h
        window/desktop/QuickCapture.cpp window/desktop/QuickCapture.h
        window/QuitHandler.cpp window/QuitHandler.h
        window/desktop/RunNotices.cpp window/desktop/RunNotices.h
        window/ScreenEngine.cpp window/ScreenEngine.h
        window/Screens.cpp window/Screens.h
        window/desktop/SharedLinks.cpp window/desktop/SharedLinks.h
        window/Shell.cpp window/Shell.h
        window/StepText.cpp window/StepText.h
        window/ShellParts.cpp window/ShellParts.h
        window/SingleInstance.cpp window/SingleInstance.h
        window/TextLeading.cpp window/TextLeading.h
        window/TopicLinks.cpp window/TopicLinks.h
        window/TopicPage.cpp window/TopicPage.h
        window/UnderWay.cpp window/UnderWay.h
        window/desktop/UpdateModel.cpp window/desktop/UpdateModel.h
        window/Tray.cpp window/Tray.h
        window/WaitingWindow.cpp window/WaitingWindow.h
        window/Visits.h
        window/WindowState.cpp window/WindowState.h)
# Bytecode starts as fast as it needs to; C++ made from all screens would take longer to compile than
# the rest of the program.
set_target_properties(vorle_window PROPERTIES QT_QMLCACHEGEN_ARGUMENTS --only-bytecode)
# The generated registration names the headers without their folder.
target_include_directories(vorle_window
    PUBLIC ${CMAKE_SOURCE_DIR} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/window ${CMAKE_CURRENT_SOURCE_DIR}/window/desktop ${CMAKE_CURRENT_SOURCE_DIR}/window/items)
target_link_libraries(vorle_window
    PUBLIC vorle_cli vorle_wiring vorle_models vorle_modelsplugin vorle_desktop vorle_update
        Qt6::Gui Qt6::Widgets Qt6::Qml Qt6::Quick
    PRIVATE vorle_flags)
vorle_precompile(vorle_window)

# Nothing depends on the display font: see fetch_font.
file(GLOB VORLE_FONTS ${VORLE_FONT_DIR}/*.ttf)
if(NOT VORLE_FONTS)
    file(GLOB VORLE_FONTS ${VORLE_FONT_DIR}/*.woff)
endif()
foreach(font ${VORLE_FONTS})
    get_filename_component(name ${font} NAME)
    set_source_files_properties(${font} PROPERTIES QT_RESOURCE_ALIAS ${name})
endforeach()
if(VORLE_FONTS)
    qt_add_resources(vorle_window vorle_fonts PREFIX /vorle/fonts FILES ${VORLE_FONTS})
endif()
