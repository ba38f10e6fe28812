// List boxes.
#include <QFontDatabase>
#include <QItemSelectionModel>
#include <QListView>
#include <QScrollBar>

#include "platform/desktop/window.h"
#include "screen/Channel.h"
#include "screen/Control.h"
#include "screen/ListLines.h"

namespace juntora::screen {
namespace {

/// Lines are laid out in columns by blanks. Letters of one width are wider than others on the
/// average, and a line of the usual length is to fit.
QFont fontOfLines(const QFont& usual) {
    constexpr double SHARE = 0.9;
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(usual.pointSizeF() * SHARE);
    return font;
}

class List : public ControlOf<QListView> {
public:
    List(const ViewedWindow& viewed, QWidget* parent)
        : ControlOf(viewed.window, parent), m_lines(viewed.window, viewed.thread), m_id(viewed.id) {
        widget().setModel(&m_lines);
        widget().setUniformItemSizes(true);
        widget().setEditTriggers(QAbstractItemView::NoEditTriggers);
        widget().setTextElideMode(Qt::ElideMiddle);
        widget().setVerticalScrollBarPolicy(
            (viewed.style & WS_VSCROLL) != 0 ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
        QObject::connect(widget().verticalScrollBar(), &QScrollBar::valueChanged,
                         [this] { m_lines.look(); });
        QObject::connect(&widget(), &QListView::doubleClicked,
                         [this](const QModelIndex&) { notify(LBN_DBLCLK); });
        QObject::connect(widget().selectionModel(), &QItemSelectionModel::selectionChanged,
                         [this](const QItemSelection& now) {
                             if (!m_lines.isTaking() && !now.isEmpty()) {
                                 tellSelected(now.indexes().front().row());
                             }
                         });
    }
    ~List() override { widget().setModel(nullptr); }

    bool isReading() const override { return m_lines.isReading(); }

protected:
    void show(const ViewedWindow&, const Units&) override {
        widget().setFont(fontOfLines(widget().parentWidget()->font()));
        widget().setAccessibleName(widget().window()->windowTitle());
        m_lines.refresh([this] { return visible(); }, [this](int row) { takeSelected(row); });
    }

private:
    ListLines::Range visible() {
        const int height = qMax(1, widget().sizeHintForRow(0));
        const int first = widget().verticalScrollBar()->value() /
                          (widget().verticalScrollMode() == QListView::ScrollPerPixel ? height : 1);
        return {first, first + widget().viewport()->height() / height + 1};
    }

    void takeSelected(int row) {
        const QModelIndex now = row >= 0 ? m_lines.index(row) : QModelIndex();
        QItemSelectionModel& selection = *widget().selectionModel();
        if (selection.hasSelection() != now.isValid() ||
            (now.isValid() && !selection.isSelected(now))) {
            // A line that comes or goes is no reason to leave the place that is being looked at.
            widget().setAutoScroll(false);
            selection.setCurrentIndex(now, QItemSelectionModel::ClearAndSelect);
            widget().setAutoScroll(true);
        }
    }

    void tellSelected(int row) {
        m_lines.forgetSelection();
        tell(window(), LB_SETCURSEL, static_cast<WPARAM>(row), 0);
        notify(LBN_SELCHANGE);
    }

    void notify(WORD what) {
        tell(GetParent(window()), WM_COMMAND, WPARAM{what} << 16 | static_cast<WORD>(m_id),
             static_cast<LPARAM>(window()));
    }

    ListLines m_lines;
    const int m_id;
};

}  // namespace

std::unique_ptr<Control> makeList(const ViewedWindow& viewed, QWidget* parent) {
    return std::make_unique<List>(viewed, parent);
}

}  // namespace juntora::screen
