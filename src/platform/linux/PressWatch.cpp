#include "platform/PressWatch.h"

#include "platform/linux/Xcb.h"

#include <QAbstractNativeEventFilter>

#include <xcb/xinput.h>

namespace kelvo {

/// Listens to the raw events of XInput 2, which the X server sends wherever the pointer is and whoever grabs it. Under
/// Xwayland these are only the presses on X11 windows.
class PressWatch::Native : public QAbstractNativeEventFilter
{
public:
    explicit Native(PressWatch &watch)
        : watch_(watch)
        , connection_(Xcb::connection())
    {
    }

    ~Native() override { stop(); }

    void start()
    {
        if (connection_ && !isListening_) {
            isListening_ = true;
            qGuiApp->installNativeEventFilter(this);
            select(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS);
        }
    }

    void stop()
    {
        if (isListening_ && qGuiApp) {
            isListening_ = false;
            select(0);
            qGuiApp->removeNativeEventFilter(this);
        }
    }

private:
    void select(std::uint32_t events)
    {
        const struct
        {
            xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
            std::uint32_t mask;
        } mask{.mask = events};
        xcb_input_xi_select_events(connection_, Xcb::root(connection_), 1, &mask.head);
        xcb_flush(connection_);
    }

    bool nativeEventFilter(const QByteArray &, void *message, qintptr *) override
    {
        const auto *event = static_cast<const xcb_ge_generic_event_t *>(message);
        const auto *extension = xcb_get_extension_data(connection_, &xcb_input_id);
        if ((event->response_type & 0x7f) == XCB_GE_GENERIC && event->extension == extension->major_opcode
            && event->event_type == XCB_INPUT_RAW_BUTTON_PRESS) {
            // The wheel and its tilt are buttons 4 to 7.
            const auto button = static_cast<const xcb_input_raw_button_press_event_t *>(message)->detail;
            if (button < 4 || button > 7) {
                Q_EMIT watch_.pressed();
            }
        }
        return false;
    }

    PressWatch &watch_;
    xcb_connection_t *connection_;
    bool isListening_ = false;
};

PressWatch::PressWatch(QObject *parent)
    : QObject(parent)
    , native_(std::make_unique<Native>(*this))
{
}

PressWatch::~PressWatch() = default;

void PressWatch::start()
{
    native_->start();
}

void PressWatch::stop()
{
    native_->stop();
}

} // namespace kelvo
