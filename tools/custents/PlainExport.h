#ifndef CUSTENTS_PLAIN_EXPORT_H
#define CUSTENTS_PLAIN_EXPORT_H

/// Plain export: a drawing whose custom entities are replaced by standard entities, for anyone
/// who opens it without the module. A custom entity is an object of a module class or a kept
/// proxy of a class no loaded module knows; after the export the drawing holds neither, so a
/// saved copy has an empty CLASSES section.
///
/// How an entity becomes standard entities:
///  - a live module entity is exploded, and every piece that is custom again is exploded in
///    turn, up to kMaxExplodeDepth levels;
///  - when a live entity's explode fails (the classes without a shape of their own answer
///    eNotApplicable), its graphics are converted instead: exactly what its proxy graphics
///    would show. The fallback is noted;
///  - a kept proxy's graphics metafile is replayed and converted.
/// Converted graphics: polylines become lightweight polylines when they lie in one plane
/// parallel to their normal's plane (otherwise one line per segment), a polyline whose points
/// coincide becomes a point, circles become closed two-segment polylines of half circles,
/// arcs become arcs (with the radii or the chord of a sector or chord arc as lines), filled
/// polygons become solid hatches and other polygons closed polylines, texts become texts.
/// Infinite lines and rays have no standard entity here and are dropped with a note.
///
/// Properties: pieces that come without properties of their own (no layer, as a free-standing
/// entity that nobody gave properties to) take the exploded entity's; pieces made from
/// graphics take the entity's and then whatever colour, layer, linetype and lineweight the
/// graphics set explicitly. Pieces join the owner of the entity they replace (model space,
/// paper space or the block definition), after its existing entities.
///
/// Failures: an entity whose explode or drawing throws, whose proxy graphics are damaged,
/// that explodes into something that is not an entity, or that is still custom after
/// kMaxExplodeDepth levels. With keepGoing false the first failures leave the database
/// untouched; with keepGoing true the failing entities are erased (so the result is still
/// plain) and listed. An entity that neither explodes nor draws anything (an invisible carrier
/// of data) is erased with a note, since nothing a reader could see is lost.

#include "DbEntity.h"
#include "Gi/GiRecorder.h"
#include "RxObject.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

class OdDbDatabase;

namespace custents {
namespace plain {

/// More levels than any real class needs; a class that explodes into itself stops here.
constexpr int kMaxExplodeDepth = 16;

/// A custom entity that could not be made standard.
struct ExportFailure {
  /// Upper-case hexadecimal, as drawings show handles.
  std::string handle;
  /// The class the entity belongs to (a proxy's original class).
  std::string className;
  /// The block that owns it ("*Model_Space", "*Paper_Space" or a block name).
  std::string owner;
  std::string reason;
};

struct PlainExportOptions {
  /// Erase failing entities and apply the rest, instead of changing nothing.
  bool keepGoing = false;
  /// Called after each custom entity with (done, total); may be empty.
  std::function<void(std::size_t, std::size_t)> progress;
};

struct PlainExportResult {
  /// Custom entities found in all blocks (live ones and kept proxies).
  std::size_t customEntities = 0;
  /// Of those, kept proxies.
  std::size_t keptProxies = 0;
  /// Standard entities added in their place.
  std::size_t piecesAdded = 0;
  /// Custom entities replaced by nothing (no pieces, no graphics).
  std::size_t entitiesRemoved = 0;
  std::vector<ExportFailure> failures;
  /// What a person should know: graphics used in place of a failed explode, dropped
  /// primitives, entities that had nothing to show.
  std::vector<std::string> notes;
  /// False when failures stopped the export before anything changed.
  bool applied = false;
};

/// Replaces every custom entity of every block of database by standard entities. The
/// database must be open for the caller to change; the module whose classes it holds must stay
/// loaded while this runs.
PlainExportResult exportPlain(OdDbDatabase* database, const PlainExportOptions& options = {});

/// True for an entity a plain drawing cannot hold: an object of a module class or a proxy.
bool isCustomEntity(const OdDbEntity* entity);

/// Standard entities (free-standing, with properties from source as described above) for the
/// primitives a recorder holds. Primitives without an equivalent add a line to notes.
OdRxObjectPtrArray entitiesFromGraphics(const std::vector<OdGiRecord>& records,
                                        const OdDbEntity* source, std::vector<std::string>& notes);

} // namespace plain
} // namespace custents

#endif
