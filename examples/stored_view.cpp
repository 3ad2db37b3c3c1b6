// Keeps the look of a map in a store, brings it back as another program would, and draws the same map with
// it. The pen also goes into a file as text, which a person may edit, and as XML.
#include <cstdio>

#include "zul/canvas/canvas.h"
#include "zul/kernel/library.h"
#include "zul/kernel/system/text_file.h"
#include "zul/raster/dib_section.h"
#include "zul/store/store.h"

namespace {

bool DrawLake(zul::CCanvas& canvas, const char16_t* path) {
    zul::CDibSection picture;
    picture.Create(320, 200, 24, nullptr);
    canvas.CreateMemoryCanvas();
    canvas.AssignBitmap(&picture);
    canvas.GetScaler()->SetScreenSize(320, 200);  // a stored view does not know its screen

    zul::CBrush meadow;
    meadow.SetColor(0xC8E8D8);  // colours are 0xBBGGRR
    canvas.FillRect(0, 0, 1600, 1000, &meadow);
    zul::CPoints shore(false);
    for (const zul::TPoint& p : {zul::TPoint{200, 500}, {500, 850}, {1100, 800}, {1400, 400}, {900, 150}})
        shore.Append(p.X, p.Y);
    canvas.Polygon(&shore);
    canvas.Release();
    return picture.SaveToFile(path);
}

bool ExportPen(const zul::CPen& pen) {
    zulsys::CTextFile text, element;
    if (!text.Create(u"pen.txt") || !element.Create(u"pen.xml")) return false;
    pen.ExportParameters(text);
    pen.ExportParametersEx(element);
    if (!text.Disconnect() || !element.Disconnect() || !text.Connect(u"pen.txt")) return false;
    zul::CPen copy;
    copy.ImportParameters(text);
    return copy.IsEqualSettings(&pen);
}

}  // namespace

int main() {
    AutoRegister();  // a store makes its objects by the names of their classes
    {
        zul::CScaler scaler;
        scaler.InitScaler({0, 0, 1600, 1000}, {320, 200}, {320, 200}, 38.0, 1.0, 0.0);
        zul::CCanvas look;
        look.SetScaler(&scaler);
        look.GetBrush().SetColor(0xF0D0A0);
        look.GetPen().Create(zul::CPen::PenExtended, 33, 25, 0x306090, 0, 5, 0x90C8F0);
        look.GetPen().SetScaled(true);  // 25 metres wide at every scale
        zul::CStore store;
        if (!store.Open(u"view.zul", zul::CStore::Create) || !store.SetRoot(u"look", &look)) return 1;
        if (!DrawLake(look, u"before.bmp") || !ExportPen(look.GetPen())) return 1;
    }
    // Another program, another year: the canvas comes with its tools and with the scaler that it refers to.
    zul::CStore store;
    if (!store.Open(u"view.zul", zul::CStore::ReadOnly)) return 1;
    const zul::CRef<zul::CCanvas> look = store.GetRoot<zul::CCanvas>(u"look");
    if (!look.IsExist() || !DrawLake(*look, u"after.bmp")) return 1;
    std::puts("before.bmp and after.bmp are drawn with the same look; pen.txt and pen.xml tell of its pen.");
    return 0;
}
