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

class List : public Control {
public:
    List(const ViewedWindow& viewed, QWidget* parent)
        : Control(viewed.window),
          m_lines(viewed.window, viewed.thread),
          m_view(std::make_unique<QListView>(parent)),
          m_id(viewed.id) {
        m_view->setModel(&m_lines);
        m_view->setUniformItemSizes(true);
        m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
        m_view->setFont(fontOfLines(m_view->font()));
        m_view->setTextElideMode(Qt::ElideMiddle);
        m_view->setVerticalScrollBarPolicy(
            (viewed.style & WS_VSCROLL) != 0 ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
        m_view->setAccessibleName(parent->windowTitle());
        QObject::connect(m_view->verticalScrollBar(), &QScrollBar::valueChanged,
                         [this] { m_lines.look(); });
        QObject::connect(m_view.get(), &QListView::doubleClicked,
                         [this](const QModelIndex&) { notify(LBN_DBLCLK); });
        QObject::connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged,
                         [this](const QModelIndex& now) {
                             if (!m_lines.isTaking() && now.isValid()) {
                                 tellSelected(now.row());
                             }
                         });
    }
    ~List() override { m_view->setModel(nullptr); }
    QWidget& widget() override { return *m_view; }

protected:
    void show(const ViewedWindow&, const Units&) override {
        m_lines.refresh([this] { return visible(); }, [this](int row) { takeSelected(row); });
    }

private:
    ListLines::Range visible() const {
        const int height = qMax(1, m_view->sizeHintForRow(0));
        const int first = m_view->verticalScrollBar()->value() /
                          (m_view->verticalScrollMode() == QListView::ScrollPerPixel ? height : 1);
        return {first, first + m_view->viewport()->height() / height + 1};
    }

    void takeSelected(int row) {
        const QModelIndex now = row >= 0 ? m_lines.index(row) : QModelIndex();
        if (m_view->currentIndex() != now) {
            m_view->selectionModel()->setCurrentIndex(now, QItemSelectionModel::ClearAndSelect);
        }
    }

    void tellSelected(int row) {
        tell(window(), LB_SETCURSEL, static_cast<WPARAM>(row), 0);
        notify(LBN_SELCHANGE);
    }

    void notify(WORD what) {
        tell(GetParent(window()), WM_COMMAND, WPARAM{what} << 16 | static_cast<WORD>(m_id),
             static_cast<LPARAM>(window()));
    }

    ListLines m_lines;
    std::unique_ptr<QListView> m_view;
    const int m_id;
};

}  // namespace

std::unique_ptr<Control> makeList(const ViewedWindow& viewed, QWidget* parent) {
    return std::make_unique<List>(viewed, parent);
}

}  // namespace juntora::screen
