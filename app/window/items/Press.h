#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// What can be pressed: by the mouse, by a finger, and by Space and Return while the keyboard is on
/// it. It draws nothing and has no size of its own; who builds on it adds its `Accessible.role`,
/// name and `onPressAction`.
///
/// Qt's own button templates do more (menus, groups, repeating, their own fonts and paddings), and
/// the module they are in takes a twentieth of the window's whole start to register. Their rules of
/// pressing hold here too: it is pressed where the button is let go over it, Space presses when it
/// is let go and shows as down meanwhile, and what hides it or disables it calls a press off.
///
/// Tab stops at it unless `activeFocusOnTab` is turned off; a click leaves the keyboard where it
/// was. Main thread.
class Press : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// What it says, for who builds on it.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)
    /// The key that does the same, "" for none; shown, not obeyed.
    Q_PROPERTY(QString keys READ keys WRITE setKeys NOTIFY keysChanged FINAL)
    /// Whether Return presses it too; else that is left to what it stands in.
    Q_PROPERTY(bool takesReturn MEMBER m_takesReturn NOTIFY takesReturnChanged FINAL)
    Q_PROPERTY(bool down READ isDown NOTIFY downChanged FINAL)
    Q_PROPERTY(bool hovered READ isHovered NOTIFY hoveredChanged FINAL)
    /// Whether the keyboard is on it and came there by the keyboard: then it shows where it is.
    Q_PROPERTY(bool visualFocus READ hasVisualFocus NOTIFY visualFocusChanged FINAL)

public:
    explicit Press(QQuickItem *parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString &text);
    QString keys() const { return m_keys; }
    void setKeys(const QString &keys);
    bool isDown() const { return m_down; }
    bool isHovered() const { return m_hovered; }
    bool hasVisualFocus() const { return m_visualFocus; }

Q_SIGNALS:
    void clicked();
    void textChanged();
    void keysChanged();
    void takesReturnChanged();
    void downChanged();
    void hoveredChanged();
    void visualFocusChanged();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;
    void hoverEnterEvent(QHoverEvent *event) override;
    void hoverLeaveEvent(QHoverEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    void set(bool &member, bool value, void (Press::*changed)());
    /// Ends a press without its being one.
    void callOff();

    QString m_text;
    QString m_keys;
    bool m_takesReturn = true;
    bool m_down = false;
    bool m_byMouse = false; // which has the button down, over it or not
    bool m_bySpace = false; // it is the bar that holds it down
    bool m_hovered = false;
    bool m_byKeys = false; // it is where the keyboard came by itself
    bool m_visualFocus = false;
};

} // namespace vorle
