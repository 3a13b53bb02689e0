import SwiftUI
import WidgetKit

/// What is shown from a moment on. No "Entry": the protocol below has a type of that name.
struct Shown: TimelineEntry {
    var date: Date
    var snapshot: WidgetSnapshot?
}

struct Provider: TimelineProvider {
    func placeholder(in context: Context) -> Shown { Shown(date: Date(), snapshot: nil) }

    func getSnapshot(in context: Context, completion: @escaping (Shown) -> Void) {
        completion(Shown(date: Date(), snapshot: WidgetSnapshot.current()))
    }

    /// The app has it drawn again when something changes; midnight changes "demain" by itself.
    func getTimeline(in context: Context, completion: @escaping (Timeline<Shown>) -> Void) {
        let now = Date()
        let midnight = Calendar.current.startOfDay(for: now.addingTimeInterval(86_400))
        let snapshot = WidgetSnapshot.current()
        completion(Timeline(entries: [Shown(date: now, snapshot: snapshot),
                                      Shown(date: midnight, snapshot: snapshot)],
                            policy: .after(midnight.addingTimeInterval(3600))))
    }
}

struct WidgetBody: View {
    @Environment(\.widgetFamily) private var family
    @Environment(\.colorScheme) private var scheme
    var entry: Shown

    var body: some View {
        Group {
            if let snapshot = entry.snapshot {
                switch family {
                case .systemSmall: Small(snapshot: snapshot, look: look(snapshot), now: entry.date)
                case .systemMedium: Medium(snapshot: snapshot, look: look(snapshot), now: entry.date)
                default: Large(snapshot: snapshot, look: look(snapshot), now: entry.date)
                }
            } else {
                Text("Ouvre vorle une première fois.").font(.callout)
            }
        }
        .padding(16)
        .frame(maxWidth: .infinity, maxHeight: .infinity, alignment: .leading)
        .paper(Look(dark: scheme == .dark, accent: .orange).paper)
    }

    private func look(_ snapshot: WidgetSnapshot) -> Look {
        let dark = scheme == .dark
        return Look(dark: dark, accent: Color(hex: dark ? snapshot.accent.dark : snapshot.accent.light))
    }
}

extension View {
    /// Behind the whole widget. From macOS 14 on the system shows no widget that does not say what
    /// of it is background.
    @ViewBuilder func paper(_ colour: Color) -> some View {
        if #available(macOS 14.0, *) {
            containerBackground(colour, for: .widget)
        } else {
            background(colour)
        }
    }
}

/// The app's colours.
struct Look {
    var dark: Bool
    var accent: Color
    var paper: Color { Color(hex: dark ? "#191613" : "#FAF6F0") }
    var line: Color { Color(hex: dark ? "#3A342C" : "#E9E0D4") }
    var ink: Color { Color(hex: dark ? "#F4EDE3" : "#241D16") }
    var soft: Color { Color(hex: dark ? "#C3B7A7" : "#5E5346") }
    var faint: Color { Color(hex: dark ? "#A0937F" : "#736757") }
}

extension Color {
    /// "#RRGGBB"; black for anything else.
    init(hex: String) {
        let value = hex.count == 7 ? UInt32(hex.dropFirst(), radix: 16) ?? 0 : 0
        self.init(red: Double(value >> 16 & 0xFF) / 255, green: Double(value >> 8 & 0xFF) / 255,
                  blue: Double(value & 0xFF) / 255)
    }
}

struct Badge: View {
    var score: Int?
    var look: Look
    var body: some View {
        let strong = (score ?? 0) >= 9
        Text(score.map(String.init) ?? "·")
            .font(.system(size: 13, weight: .bold))
            .foregroundColor(strong ? .white : (score ?? 0) >= 8 ? look.accent : look.soft)
            .frame(width: 28, height: 28)
            .background(Circle().fill(strong ? look.accent : look.accent.opacity((score ?? 0) >= 7 ? 0.16 : 0)))
            .overlay(Circle().stroke(strong ? Color.clear : look.line))
            .accessibilityLabel(score.map { "\($0) sur 10" } ?? "sans note")
    }
}

struct Row: View {
    var item: WidgetSnapshot.Item
    var look: Look
    var body: some View {
        HStack(spacing: 10) {
            Badge(score: item.score, look: look)
            VStack(alignment: .leading, spacing: 1) {
                Text(item.title).font(.system(size: 13, weight: .semibold)).foregroundColor(look.ink)
                if let detail = item.detail, !detail.isEmpty {
                    Text(detail).font(.system(size: 12)).foregroundColor(look.faint)
                }
            }
            .lineLimit(1)
        }
    }
}

struct NextLine: View {
    var snapshot: WidgetSnapshot
    var look: Look
    var now: Date
    var body: some View {
        if let next = snapshot.nextSearch, !snapshot.searching {
            Text("Fouille " + next.label(now: now)).font(.system(size: 12)).foregroundColor(look.faint)
        }
    }
}

/// What is left of the week's time, of how much.
struct WeekLine: View {
    var snapshot: WidgetSnapshot
    var colour: Color
    var body: some View {
        Text(snapshot.weekLeftLabel + " " + snapshot.weekBudgetLabel)
            .font(.system(size: 12)).foregroundColor(colour)
    }
}

/// A line of the small size that is told in large letters.
struct Strong: View {
    var text: String
    var size: CGFloat = 19
    var look: Look
    var body: some View {
        Text(text).font(.system(size: size, weight: .bold)).foregroundColor(look.ink)
    }
}

/// A part's name, and at the other end what there is of it.
struct Heading<End: View>: View {
    var title: String
    var look: Look
    @ViewBuilder var end: End
    var body: some View {
        HStack {
            Strong(text: title, size: 17, look: look)
            Spacer()
            end
        }
    }
}

struct Small: View {
    var snapshot: WidgetSnapshot
    var look: Look
    var now: Date
    var body: some View {
        VStack(alignment: .leading, spacing: 4) {
            if snapshot.searching {
                Spacer()
                Strong(text: "Fouille\nen cours", look: look)
                Text("\(snapshot.toSortCount) \(topics) à trier").font(.system(size: 12)).foregroundColor(look.faint)
            } else if snapshot.toSortCount == 0 {
                Spacer()
                Strong(text: "Tout est trié", look: look)
                WeekLine(snapshot: snapshot, colour: look.soft)
                NextLine(snapshot: snapshot, look: look, now: now)
            } else {
                HStack {
                    Text("À trier").font(.system(size: 14)).foregroundColor(look.soft)
                    Spacer()
                    if let best = snapshot.toSort.first { Badge(score: best.score, look: look) }
                }
                Spacer()
                Strong(text: String(snapshot.toSortCount), size: 46, look: look)
                Text(topics).font(.system(size: 13)).foregroundColor(look.soft)
                NextLine(snapshot: snapshot, look: look, now: now)
            }
        }
    }

    private var topics: String { snapshot.toSortCount < 2 ? "sujet" : "sujets" }
}

struct Medium: View {
    var snapshot: WidgetSnapshot
    var look: Look
    var now: Date
    var body: some View {
        HStack(spacing: 16) {
            Small(snapshot: snapshot, look: look, now: now).frame(width: 100)
            Rectangle().fill(look.line).frame(width: 1)
            VStack(alignment: .leading, spacing: 10) {
                ForEach(snapshot.toSort.prefix(3)) { Row(item: $0, look: look) }
            }
        }
    }
}

struct Large: View {
    var snapshot: WidgetSnapshot
    var look: Look
    var now: Date
    var body: some View {
        VStack(alignment: .leading, spacing: 8) {
            Heading(title: "À trier", look: look) {
                Text(String(snapshot.toSortCount)).font(.system(size: 17, weight: .bold)).foregroundColor(look.accent)
            }
            ForEach(snapshot.toSort.prefix(3)) { Row(item: $0, look: look) }
            Rectangle().fill(look.line).frame(height: 1)
            Heading(title: "Programme", look: look) { WeekLine(snapshot: snapshot, colour: look.faint) }
            Budget(snapshot: snapshot, look: look).frame(height: 6)
            ForEach(snapshot.program.prefix(3)) { Row(item: $0, look: look) }
            Spacer(minLength: 0)
            NextLine(snapshot: snapshot, look: look, now: now)
        }
    }
}

/// What is done of the week's time, then what still fits.
struct Budget: View {
    var snapshot: WidgetSnapshot
    var look: Look
    var body: some View {
        GeometryReader { room in
            let whole = Double(max(snapshot.weekBudget, snapshot.weekDone + snapshot.weekPlanned, 1))
            let width = room.size.width
            ZStack(alignment: .leading) {
                Capsule().fill(look.line)
                Capsule().fill(look.faint)
                    .frame(width: width * Double(snapshot.weekDone + snapshot.weekPlanned) / whole)
                Capsule().fill(look.accent).frame(width: width * Double(snapshot.weekDone) / whole)
            }
        }
    }
}

@main
struct VorleWidget: Widget {
    var body: some WidgetConfiguration {
        StaticConfiguration(kind: "fr.vorle.vorle.widget", provider: Provider()) { WidgetBody(entry: $0) }
            .configurationDisplayName("vorle")
            .description("Ce qui attend d’être trié, et ta semaine.")
            .supportedFamilies([.systemSmall, .systemMedium, .systemLarge])
            .contentMarginsDisabled() // it has its own
    }
}
