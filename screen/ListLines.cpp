#include "screen/ListLines.h"

#include <algorithm>
#include <string>
#include <vector>

#include "platform/desktop/message.h"
#include "screen/Units.h"

namespace juntora::screen {
namespace {

/// Lines above and below those in view that are read with them, so that a step finds them there.
constexpr int MARGIN_LINES = 8;

/// More lines than any list has: a program can claim any number, and the view makes room for each.
constexpr LRESULT MOST_LINES = 1'000'000;

}  // namespace

/// What one look at the list has brought.
struct ListLines::Reading {
    int count = 0;
    int selected = -1;
    Range range;
    std::vector<std::string> lines;
};

ListLines::ListLines(HWND list, DWORD owner)
    : m_list(list), m_channel(Channel::to(owner)), m_alive(std::make_shared<int>()) {}

void ListLines::refresh(std::function<Range()> visible, std::function<void(int)> selected) {
    m_visible = std::move(visible);
    m_selected = std::move(selected);
    if (m_isAsking) {
        m_mustAskAgain = true;
    } else {
        ask(m_visible());
    }
}

void ListLines::look() {
    if (!m_visible) {
        return;
    }
    const Range range = m_visible();
    for (int row = range.first; row <= range.last && row < m_count; ++row) {
        if (!m_lines.contains(row)) {
            refresh(m_visible, m_selected);
            return;
        }
    }
}

int ListLines::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_count; }

QVariant ListLines::data(const QModelIndex& index, int role) const {
    const auto line = m_lines.find(index.row());
    if (line == m_lines.end()) {
        return {};
    }
    switch (role) {
        case Qt::DisplayRole:
        case Qt::AccessibleTextRole:
            return line->second;
        case Qt::ToolTipRole:  // A plain text, whatever it looks like.
            return QStringLiteral("<qt style='white-space:pre'>%1</qt>")
                .arg(line->second.toHtmlEscaped());
        default:
            return {};
    }
}

void ListLines::ask(Range range) {
    m_isAsking = true;
    m_mustAskAgain = false;
    m_isSelectionOld = false;
    range.first = qMax(0, range.first - MARGIN_LINES);
    range.last += MARGIN_LINES;
    m_channel->ask(m_alive, [this, list = m_list, range]() -> std::function<void()> {
        auto reading = std::make_shared<Reading>();
        reading->range = range;
        reading->count = static_cast<int>(
            std::clamp<LRESULT>(SendMessageA(list, LB_GETCOUNT, 0, 0), 0, MOST_LINES));
        reading->selected = static_cast<int>(SendMessageA(list, LB_GETCURSEL, 0, 0));
        for (int row = range.first; row <= range.last && row < reading->count; ++row) {
            reading->lines.push_back(askForText(list, LB_GETTEXT, static_cast<WPARAM>(row)));
        }
        return [this, reading] { take(*reading); };
    });
}

void ListLines::take(const Reading& reading) {
    m_isAsking = false;
    m_isTaking = true;
    setCount(reading.count);
    m_lines.clear();
    int row = reading.range.first;
    for (const std::string& line : reading.lines) {
        m_lines[row++] = textOf(line);
    }
    if (m_count > 0) {
        Q_EMIT dataChanged(index(0), index(m_count - 1), {Qt::DisplayRole});
    }
    if (!m_isSelectionOld) {
        m_selected(reading.selected);
    }
    m_isTaking = false;
    if (m_mustAskAgain) {
        ask(m_visible());
    } else {
        look();
    }
}

/// Rows come and go at the end: which ones they really were is in the texts, and the view keeps its
/// place.
void ListLines::setCount(int count) {
    if (count > m_count) {
        beginInsertRows({}, m_count, count - 1);
        m_count = count;
        endInsertRows();
    } else if (count < m_count) {
        beginRemoveRows({}, count, m_count - 1);
        m_count = count;
        endRemoveRows();
    }
}

}  // namespace juntora::screen
