// What a rectangle does when it is asked to draw itself. It stands apart because it alone looks up to the
// canvas.
#include "zul/canvas/canvas.h"
#include "zul/geometry/rect.h"
#include "zul/kernel/message.h"

namespace zul {

bool CRect::DoPaint(CCanvas* canvas, CAnyObject*) {
    if (!canvas) return false;
    canvas->Rectangle(m_MinX, m_MinY, m_MaxX, m_MaxY);
    return true;
}

bool CRect::DoMessage(CMessage* message) {
    if (!message) return false;
    if (message->GetParam1() != 0) {
        if (message->IsNamed(u"GetMbr")) {
            GetValue(*CMessage::ToPointer<TRect>(message->GetParam1()));
            return true;
        }
        // A subclass that paints itself otherwise still answers this message with the bare frame.
        if (message->IsNamed(u"Draw"))
            return CRect::DoPaint(CMessage::ToPointer<CCanvas>(message->GetParam1()), nullptr);
    }
    return CAnyObject::DoMessage(message);
}

}  // namespace zul
