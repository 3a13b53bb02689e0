import Foundation
import WidgetKit

/// The app's widgets read their file again.
@_cdecl("vorle_reload_widgets")
public func reloadWidgets() {
    guard let app = Bundle.main.bundleIdentifier else { return }
    WidgetCenter.shared.reloadTimelines(ofKind: app + ".widget")
}
