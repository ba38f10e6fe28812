// The lines of a list box that are to be seen.
#pragma once

#include <functional>
#include <memory>
#include <unordered_map>

#include <QAbstractListModel>
#include <QString>

#include "screen/Channel.h"

namespace juntora::screen {

/// Knows how many lines there are, and the text of those that are looked at: a list of ten thousand
/// is never read as a whole. While an answer is awaited, further changes only leave word that there
/// were some, so that a list that changes faster than it can be read is skipped through and never
/// queued up for.
class ListLines : public QAbstractListModel {
public:
    /// A stretch of lines, the last one included.
    struct Range {
        int first = 0;
        int last = -1;
    };

    ListLines(HWND list, DWORD owner);

    /// Looks at the list anew. `visible` tells what of it is to be seen, `selected` takes the line
    /// that is selected there, -1 for none.
    void refresh(std::function<Range()> visible, std::function<void(int)> selected);
    /// Reads what has come into view and is not known yet.
    void look();

    /// What is being read of the selection is from before the person's last choice.
    void forgetSelection() { m_isSelectionOld = true; }
    bool isReading() const { return m_isAsking; }

    /// Whether what the view does now comes from the list, and not from a person.
    bool isTaking() const { return m_isTaking; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    struct Reading;
    void ask(Range range);
    void take(const Reading& reading);
    void setCount(int count);

    const HWND m_list;
    std::shared_ptr<Channel> m_channel;
    std::shared_ptr<void> m_alive;
    std::function<Range()> m_visible;
    std::function<void(int)> m_selected;
    std::unordered_map<int, QString> m_lines;
    int m_count = 0;
    bool m_isAsking = false;
    bool m_mustAskAgain = false;
    bool m_isTaking = false;
    bool m_isSelectionOld = false;
};

}  // namespace juntora::screen
