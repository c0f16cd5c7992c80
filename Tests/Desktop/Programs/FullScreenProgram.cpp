// full-screen-program COLOR: fills the screen with a colour and writes down what it is told: a line for each
// press of a key or a button, and for each change of the focus.

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>

#include <cstdio>

namespace {

void say(const char* what, int x = 0, int y = 0)
{
    std::printf("%s %d %d\n", what, x, y);
    std::fflush(stdout);
}

class FullScreenProgram final : public QRasterWindow {
public:
    explicit FullScreenProgram(QColor color)
        : m_color(color)
    {
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(QRect(QPoint(), size()), m_color); }
    void focusInEvent(QFocusEvent*) override { say("focused"); }
    void focusOutEvent(QFocusEvent*) override { say("unfocused"); }
    void keyPressEvent(QKeyEvent* event) override { say("key", event->key()); }
    void mousePressEvent(QMouseEvent* event) override
    {
        say("button", event->position().toPoint().x(), event->position().toPoint().y());
    }

private:
    QColor m_color;
};

}

int main(int argumentCount, char** arguments)
{
    QGuiApplication application(argumentCount, arguments);
    FullScreenProgram program(QColor(QString::fromLocal8Bit(arguments[1])));
    program.showFullScreen();
    return QGuiApplication::exec();
}
