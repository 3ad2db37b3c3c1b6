/// \file
/// `zulmap`: the command line.

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <optional>
#include <string>

#include "apps/zulmap/label_sheet/label_sheet_painter.h"
#include "apps/zulmap/pens/sheet_painter.h"
#include "apps/zulmap/render_command.h"
#include "apps/zulmap/sheet_file.h"
#include "apps/zulmap/tool_error.h"
#include "apps/zulmap/view/view_command.h"
#include "apps/zulmap/world/import_command.h"
#include "apps/zulmap/world/style_command.h"

namespace {

constexpr int kFailed = 2;

/// Every failure is one line and the same exit status, whoever found it.
int Fail(std::string message) {
    for (char& c : message) {
        if (c == '\n') c = ' ';
    }
    std::cerr << "zulmap: " << message << '\n';
    return kFailed;
}

void DescribeMap(CLI::App& command, zulmap::MapRequest& request) {
    command
        .add_option("maps", request.maps,
                    "Vector files of any format that GDAL reads, all layers of which are drawn, and BMP "
                    "pictures with a world file beside them, which lie below")
        ->type_name("MAP");
    command
        .add_option("--raster", request.rasters,
                    "A BMP picture and the box that it covers, in the map's own coordinates; may be repeated")
        ->allow_extra_args(false)
        ->type_name("FILE,MINX,MINY,MAXX,MAXY");
    command
        .add_option("--pen", request.pen,
                    "Pen of all lines and outlines, such as \"width=2 color=#8a7866\"; keys: type (0 none, 1 "
                    "solid, 2 dashed, 3 extended), style, width, color, extra, dash, end, scaled")
        ->type_name("KEY=VALUE...");
    const struct {
        const char* name;
        std::optional<std::string>& settings;
        const char* what;
    } pens[] = {
        {"--coast-pen", request.coastPen, "The same for outlines without a neighbour only"},
        {"--border-pen", request.borderPen, "The same for outlines between two areas only"},
        {"--line-pen", request.linePen, "The same for lines only"},
    };
    for (const auto& pen : pens) {
        command.add_option(pen.name, pen.settings, pen.what)->type_name("KEY=VALUE...");
    }
    command
        .add_option(
            "--brush", request.brush,
            "Brush of all areas, such as \"color=#e8e0d0\" or \"type=3 pattern=wood.bmp\"; keys: type (0 "
            "none, 1 solid, 3 pattern), color, pattern")
        ->type_name("KEY=VALUE...");
    command
        .add_option("--symbol", request.symbol,
                    "A BMP picture in place of every point; its first pixel's colour, or the one given, is "
                    "left out")
        ->type_name("FILE[,RRGGBB]");
    command
        .add_option("--labels", request.labels,
                    "Write the names that this field holds: in areas, beside points, along lines, as many as "
                    "there is room for")
        ->type_name("FIELD");
    command
        .add_option(
            "--font", request.font,
            "Font of the labels, such as \"name='DejaVu Sans' height=9 halo=1\"; keys: name, height (points; "
            "0: as it fits, so unless given), color, halo (0 to 7 pixels), halocolor, angle (degrees), "
            "framed, bold, italic, underline, strikeout, scaled (1: the height is in metres)")
        ->type_name("KEY=VALUE...");
    command.add_option("--graticule", request.graticule, "Draw a net on the water, its lines this far apart")
        ->type_name("UNITS");
}

void DescribeRender(CLI::App& command, zulmap::RenderRequest& request) {
    DescribeMap(command, request);
    command.add_option("-o,--output", request.output, "The picture to write; ends in .png or .bmp")
        ->required()
        ->type_name("FILE");
    command.add_option("--size", request.size, "Pixels of the picture; 1600x800 unless given")
        ->type_name("WxH");
    command
        .add_option("--bbox", request.box,
                    "The part of the map to show, in its own coordinates; all of it unless given")
        ->type_name("MINX,MINY,MAXX,MAXY");
    command.add_option("--center", request.center, "The middle of the picture, in the map's coordinates")
        ->type_name("X,Y");
    command.add_option("--scale", request.scale, "The scale; a centimetre is 37.8 pixels")
        ->type_name("METRES_PER_CM");
    command
        .add_option("--page", request.page,
                    "Print on a sheet of paper instead, \"width=210 height=297 dpi=150 margin=10\" unless "
                    "said otherwise: millimetres, and dots an inch")
        ->type_name("KEY=VALUE...");
    command.add_option("--rotate", request.angle, "Turn the view counter-clockwise about its centre")
        ->type_name("DEG");
    command
        .add_option(
            "--perspective", request.depth,
            "Look into the distance: the horizon is this many metres beyond the near part, which is a "
            "third of that deep unless --bbox or --scale says otherwise; --center and --scale are those "
            "of the lower edge")
        ->type_name("DEPTH");
}

void DescribeView(CLI::App& command, zulmap::ViewRequest& request) {
    DescribeMap(command, request);
    command.add_option("--size", request.size, "Pixels of the window at first; 1280x800 unless given")
        ->type_name("WxH");
    command
        .add_option("--script", request.script,
                    "Play the inputs in this file and quit at its end; see below for its lines")
        ->type_name("FILE");
    command.footer(zulmap::GetViewHelp());
}

void DescribeImport(CLI::App& command, zulmap::ImportRequest& request) {
    command
        .add_option("maps", request.maps,
                    "Vector files of any format that GDAL reads, all layers of them, and BMP pictures with a "
                    "world file beside them")
        ->required()
        ->type_name("MAP");
    command
        .add_option("--raster", request.rasters,
                    "A BMP picture and the box that it covers, in the map's own coordinates; may be repeated")
        ->allow_extra_args(false)
        ->type_name("FILE,MINX,MINY,MAXX,MAXY");
    command
        .add_option("-o,--output", request.output,
                    "The store to write; ends in .zul; a map in it is replaced")
        ->required()
        ->type_name("FILE");
}

/// A sheet of samples, as it was asked for.
struct SheetRequest {
    std::string output;
    std::string sheet{};  ///< of the pens
};

void DescribeSheet(CLI::App& command, SheetRequest& request) {
    command
        .add_option("-o,--output", request.output,
                    "The picture to write; ends in .png or .bmp; " + request.output + " unless given")
        ->type_name("FILE");
}

void DescribePens(CLI::App& command, SheetRequest& request) {
    DescribeSheet(command, request);
    command
        .add_option(
            "--sheet", request.sheet,
            "What to show: styles (every extended style; so unless given), endings (of lines), metres "
            "(widths in metres at three scales)")
        ->type_name("NAME");
}

int Run(int argc, char** argv) {
    CLI::App app{"Draws vector maps.", "zulmap"};
    app.set_version_flag("--version", "zulmap " ZULMAP_VERSION);
    app.require_subcommand(1);
    zulmap::RenderRequest request;
    zulmap::ViewRequest view;
    SheetRequest pens{"pens.png", "styles"};
    SheetRequest labels{"labels.png"};
    DescribeRender(*app.add_subcommand("render", "Draw map files into a picture"), request);
    CLI::App& viewCommand = *app.add_subcommand("view", "Show map files in a window to move about in");
    DescribeView(viewCommand, view);
    CLI::App& pensCommand = *app.add_subcommand("pens", "Draw a sheet of the pens into a picture");
    DescribePens(pensCommand, pens);
    CLI::App& labelsCommand =
        *app.add_subcommand("labels", "Draw a sheet of texts in rectangles into a picture");
    DescribeSheet(labelsCommand, labels);
    zulmap::ImportRequest import;
    CLI::App& importCommand = *app.add_subcommand("import", "Put map files into a store");
    DescribeImport(importCommand, import);
    std::string stored;
    CLI::App& infoCommand = *app.add_subcommand("info", "Say what a store holds");
    infoCommand.add_option("store", stored, "The store; ends in .zul")->required()->type_name("FILE");
    std::string exported;
    std::string imported;
    CLI::App& styleCommand = *app.add_subcommand("style", "Write or read the look of a store's layers");
    styleCommand.add_option("store", stored, "The store; ends in .zul")->required()->type_name("FILE");
    CLI::Option& exportOption =
        *styleCommand.add_option("--export", exported, "The document to write; ends in .xml or .txt")
             ->type_name("FILE");
    CLI::Option& importOption =
        *styleCommand.add_option("--import", imported, "The document whose look the store takes over")
             ->type_name("FILE")
             ->excludes(&exportOption);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return app.exit(error);  // help or version was asked for
        throw;
    }
    if (pensCommand.parsed()) {
        const zulmap::PenSheet sheet = zulmap::MakePenSheet(pens.sheet);
        zulmap::WriteSheet<zulmap::SheetPainter>(pens.output, std::cout, sheet);
    } else if (labelsCommand.parsed()) {
        zulmap::WriteSheet<zulmap::LabelSheetPainter>(labels.output, std::cout);
    } else if (importCommand.parsed()) {
        zulmap::Import(import, std::cout);
    } else if (infoCommand.parsed()) {
        zulmap::ShowInfo(stored, std::cout);
    } else if (styleCommand.parsed()) {
        if (!exportOption && !importOption) throw zulmap::ToolError("style wants --export or --import");
        if (exportOption) zulmap::ExportStyle(stored, exported);
        if (importOption) zulmap::ImportStyle(stored, imported);
    } else if (viewCommand.parsed()) {
        zulmap::View(view, std::cout);
    } else {
        zulmap::Render(request, std::cout);
    }
    if (!std::cout.flush()) throw zulmap::ToolError("standard output cannot be written");
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (const std::exception& error) {
        return Fail(error.what());
    }
}
