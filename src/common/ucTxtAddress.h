#pragma once

#include "app/RecentList.h"

#include <QWidget>

class QLineEdit;
class QAction;
class QToolButton;

// The folder address bar: a box showing the current folder, which the user can type over and
// confirm with Enter (Esc shows the address again), and a back button that steps through the
// earlier addresses, newest first. Every accepted change raises NewAddress.
//
// An address that does not exist is refused: the box says so until Esc or a new address
// replaces the words. A long address is shown shortened with "..." and whole again while the
// box has the focus; Address() always gives it whole. The history is kept in the settings
// section the host names, if any.
class ucTxtAddress : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString Address READ Address WRITE setAddress NOTIFY NewAddress)

public:
    // formName: the host window's settings section for the history; empty keeps it in memory.
    explicit ucTxtAddress(const QString& formName = {}, QWidget* parent = nullptr);

    QString Address() const { return m_address; }
    // An empty value means the pictures folder; a folder gains a trailing "/". Setting the
    // address it already has does nothing.
    void setAddress(const QString& value);

    QLineEdit* txtAddress() const { return m_box; }
    QToolButton* imgBack() const { return m_back; }
    // Back on the keyboard (Alt+Left); the host window holds it, so it works wherever the
    // focus is in the window.
    QAction* BackAction() const { return m_backAction; }

signals:
    void NewAddress();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    RecentList& history();
    void apply(const QString& address);
    void goBack();
    void confirmTyped();
    void shorten();
    int boxTextWidth() const;

    QLineEdit* m_box;
    QToolButton* m_back;
    QAction* m_backAction;
    QString m_formName;
    QString m_address;
    // The text last shown for m_address, shortened or whole.
    QString m_shown;
    RecentList m_history;
    bool m_historyLoaded = false;
    // The history entry the last back step went to; -1 after any other change.
    int m_backFrom = -1;
    bool m_shortening = false;
};
