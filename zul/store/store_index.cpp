#include <algorithm>
#include <cmath>

#include "zul/store/store_session.h"
#include "zul/store/store_step.h"

namespace zul {
namespace {

// Within what 32-bit floating numbers hold, with room for rounding outward.
constexpr double FarthestCoordinate = 1e30;

// The index weighs volumes when it grows, and would grow blindly if all were flat. Layers are whole numbers
// and few enough for halves to be exact in 32-bit floating numbers.
constexpr double LayerThickness = 0.5;

bool IsPlace(const TWorldBox& box) {
    // Comparisons with NaN are false.
    return box.MinX <= box.MaxX && box.MinY <= box.MaxY && box.MinX >= -FarthestCoordinate &&
           box.MinY >= -FarthestCoordinate && box.MaxX <= FarthestCoordinate &&
           box.MaxY <= FarthestCoordinate;
}

}  // namespace

bool CStoreSession::Place(std::int64_t id, const TWorldBox& box, std::uint32_t layer) {
    const bool isPlace = IsPlace(box) && layer <= CStore::MaxLayer;
    const std::optional<bool> row = isPlace ? FindRow(id) : false;
    if (!row) return false;
    if (!*row) {
        CAnyObject::RunError(ErrorFailed, u"No such object, layer or box <zul::CStore::Place()>");
        return false;
    }
    CStoreStep step(*this);
    return step.End(step.IsReady() && (CQuery(m_Database, m_InsertBox)
                                           .Bind(1, id)
                                           .Bind(2, box.MinX)
                                           .Bind(3, box.MaxX)
                                           .Bind(4, box.MinY)
                                           .Bind(5, box.MaxY)
                                           .Bind(6, std::int64_t{layer})
                                           .Bind(7, layer + LayerThickness)
                                           .Run() ||
                                       Fail(u"Can't place an object", u"Place")));
}

bool CStoreSession::RemovePlace(std::int64_t id) {
    CStatement statement("SELECT 1 FROM boxes WHERE id=?");
    {
        CQuery query(m_Database, statement);
        if (!query.Bind(1, id).Next()) {
            return query.IsDone() ? false : Fail(u"Can't search the index", u"RemovePlace");
        }
    }
    CStoreStep step(*this);
    return step.End(step.IsReady() && (CQuery(m_Database, m_DeleteBox).Bind(1, id).Run() ||
                                       Fail(u"Can't remove a box", u"RemovePlace")));
}

std::vector<CObjectID> CStoreSession::FindInBox(const TWorldBox& box, std::uint32_t firstLayer,
                                                std::uint32_t lastLayer) {
    std::vector<CObjectID> found;
    if (!(box.MinX <= box.MaxX && box.MinY <= box.MaxY)) return found;
    CQuery query(m_Database, m_SelectBoxes);
    query.Bind(1, box.MinX)
        .Bind(2, box.MaxX)
        .Bind(3, box.MinY)
        .Bind(4, box.MaxY)
        .Bind(5, std::int64_t{firstLayer})
        .Bind(6, std::int64_t{lastLayer});
    while (query.Next())
        found.emplace_back(query.GetInteger(0));
    if (!query.IsDone()) Fail(u"Can't search the index", u"FindInBox");
    m_Counts.BoxesFound += found.size();
    std::sort(found.begin(), found.end(),
              [](CObjectID a, CObjectID b) { return a.GetValue() < b.GetValue(); });
    return found;
}

bool CStoreSession::GetBounds(TWorldBox& box, std::uint32_t firstLayer, std::uint32_t lastLayer) {
    CStatement statement(
        "SELECT min(min_x), min(min_y), max(max_x), max(max_y) FROM boxes WHERE max_layer>=? AND "
        "min_layer<=?");
    CQuery query(m_Database, statement);
    query.Bind(1, std::int64_t{firstLayer}).Bind(2, std::int64_t{lastLayer});
    if (!query.Next()) return Fail(u"Can't search the index", u"GetBounds");
    if (query.IsNull(0)) return false;
    box = {query.GetDouble(0), query.GetDouble(1), query.GetDouble(2), query.GetDouble(3)};
    return true;
}

}  // namespace zul
