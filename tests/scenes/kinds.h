/// \file
/// The kinds of scenes.
#pragma once

#include "tests/scenes/board.h"
#include "tests/scenes/random.h"

namespace scenes {

struct TKind {
    const char* Name;
    void (*Draw)(CBoard& board, CRandom& random);
};

// figure_scenes.cpp
void DrawLines(CBoard& board, CRandom& random);
void DrawPolylines(CBoard& board, CRandom& random);
void DrawWideLines(CBoard& board, CRandom& random);
void DrawDashes(CBoard& board, CRandom& random);
void DrawPolygons(CBoard& board, CRandom& random);
void DrawRectangles(CBoard& board, CRandom& random);
void DrawEllipses(CBoard& board, CRandom& random);
void DrawEveryRop(CBoard& board, CRandom& random);

// block_scenes.cpp
void DrawFills(CBoard& board, CRandom& random);
void DrawPatterns(CBoard& board, CRandom& random);
void DrawCopies(CBoard& board, CRandom& random);
void DrawCopiesWithPattern(CBoard& board, CRandom& random);
void DrawOverlaps(CBoard& board, CRandom& random);
void DrawStretched(CBoard& board, CRandom& random);
void DrawTransparent(CBoard& board, CRandom& random);
void DrawMono(CBoard& board, CRandom& random);
void DrawEdges(CBoard& board, CRandom& random);
void DrawScrolled(CBoard& board, CRandom& random);
void DrawPixels(CBoard& board, CRandom& random);

// gradient_scenes.cpp
void DrawGradients(CBoard& board, CRandom& random);

// region_scenes.cpp
void DrawRegions(CBoard& board, CRandom& random);

// canvas_scenes.cpp
void DrawCanvas(CBoard& board, CRandom& random);
void DrawTurnedCanvas(CBoard& board, CRandom& random);
void DrawPerspective(CBoard& board, CRandom& random);

// pen_scenes.cpp
void DrawPens(CBoard& board, CRandom& random);

}  // namespace scenes
