#pragma once

#include <QSize>
#include <QString>

#include <string>
#include <string_view>

class QWidget;

// What the controls share of Qt: texts, lengths and events.
namespace win {

QString FromBytes(std::string_view bytes);

// The text as far as a person would read it in one place: its first few thousand characters. Qt is slow with long ones.
QString Readable(std::string_view bytes);

// The bytes of a text that a person may have edited: `original` itself when nothing changed, Windows-1252 when
// `original` is not UTF-8 and that code page has all the characters, else UTF-8.
std::string BytesOfEdited(const QString& edited, std::string_view original);

// Qt takes a tool tip that looks like HTML for it.
QString PlainToolTip(const QString& text);

// The size that a container's controls are placed for, and what it has gained since; nothing unless it was set.
void SetDesignSize(QWidget* container, QSize size);
QSize GainedSize(const QWidget* container);

// The line around a list or page of text. The style draws its own, at some densities outside the widget.
void DrawEdge(QWidget* widget);

int ToPixels(double twips);
double ToTwips(int pixels);

// Serves events for this long, asleep when there are none.
void RunEventsFor(int milliseconds);

// Runs the handler of an event. It is copied first, since a handler may destroy the control that holds it.
template <class Event, class... Args>
void Raise(const Event& event, Args&&... args) {
  const Event handler = event;
  if (handler) handler(args...);
}

}  // namespace win
