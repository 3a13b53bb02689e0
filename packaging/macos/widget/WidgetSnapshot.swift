import Foundation

/// The state of the app in small, as it keeps it in "widget.json" (docs/widget.md tells each key). A
/// key that a later version adds is passed over; one that is not there leaves what it stands for
/// away, so that an old widget and a new app still get on.
struct WidgetSnapshot: Decodable {
    struct Item: Decodable, Identifiable {
        var id: String
        var title: String
        var score: Int?
        var detail: String?
        var unread: Bool?
    }
    struct NextSearch: Decodable {
        var at: Date
        var label: String
    }
    struct Colours: Decodable {
        var light: String
        var dark: String
    }

    var toSort: [Item]
    var toSortCount: Int
    var program: [Item]
    var programCount: Int
    var weekDone: Int
    var weekPlanned: Int
    var weekBudget: Int
    var weekLeftLabel: String
    var weekBudgetLabel: String
    var nextSearch: NextSearch?
    var searching: Bool
    var accent: Colours

    static func read(_ data: Data) throws -> WidgetSnapshot {
        let decoder = JSONDecoder()
        decoder.dateDecodingStrategy = .iso8601
        return try decoder.decode(WidgetSnapshot.self, from: data)
    }

    /// What the app last wrote; nil before its first start, and where no team signed the extension.
    static func current() -> WidgetSnapshot? {
        guard let group = Bundle.main.object(forInfoDictionaryKey: "VorleAppGroup") as? String,
              let url = FileManager.default.containerURL(forSecurityApplicationGroupIdentifier: group),
              let data = try? Data(contentsOf: url.appendingPathComponent("widget.json"))
        else { return nil }
        return try? read(data)
    }
}

extension WidgetSnapshot.NextSearch {
    /// "Fouille dans 2 jours", as the app words it, worked out anew: the app may be closed for days.
    func label(now: Date, calendar: Calendar = .current) -> String {
        let days = calendar.dateComponents([.day], from: calendar.startOfDay(for: now),
                                           to: calendar.startOfDay(for: at)).day ?? 0
        let minutes = Int((at.timeIntervalSince(now) / 60).rounded(.up))
        switch days {
        case 0 where minutes > 0 && minutes <= 60: return "aujourd’hui, dans \(minutes) min"
        case 0:
            let time = calendar.dateComponents([.hour, .minute], from: at)
            return String(format: "%d:%02d", time.hour ?? 0, time.minute ?? 0)
        case 1: return "demain"
        case 2...: return "dans \(days) jours"
        case -1: return "hier"
        default: return label
        }
    }
}
