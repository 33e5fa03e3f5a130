#pragma once

#include <memory>
#include <utility>

#include "exchange/export/ShapeDocument.h"
#include "exchange/export/StepTransfer.h"

namespace KVR
{

class Output;

/// The state after a phase of a STEP export. It can be moved but not copied, and each phase takes that of the phase
/// before it and no other: a document becomes a TransferredModel, that a SeparatedModel, a LayeredModel, a
/// DressedModel, an AnnotatedModel, a FinishedModel, and that a file.
class StepPhase
{
public:
    StepPhase(StepPhase&&) = default;
    StepPhase& operator=(StepPhase&&) = default;
    ~StepPhase() = default;

protected:
    explicit StepPhase(std::unique_ptr<StepTransfer> step) : m_step(std::move(step)) {}
    /// The phase before, which is over.
    explicit StepPhase(StepPhase& before) : m_step(std::move(before.m_step)) {}

    std::unique_ptr<StepTransfer> m_step;
};

/// The entities that Open CASCADE's writer makes of a document.
class TransferredModel : public StepPhase
{
public:
    /// Throws std::runtime_error when there are none.
    explicit TransferredModel(ShapeDocument document, TellStage const& tell = {});
};

/// Each point is an item of its own; the writer makes one of all points of a part. From here on each body has its item.
class SeparatedModel : public StepPhase
{
public:
    explicit SeparatedModel(TransferredModel&& model);
};

/// Points are in their layers, and the layers in the document's order.
class LayeredModel : public StepPhase
{
public:
    explicit LayeredModel(SeparatedModel&& model);
};

/// Bodies have their names, and are hidden where the document hides them within parts that are shown; the colours of
/// occurrences have their transparency, and those that the scene does not have are gone.
class DressedModel : public StepPhase
{
public:
    explicit DressedModel(LayeredModel&& model);
};

/// What dimensions, tolerances and datums mean; and a draughting model for each part with callouts that are drawn or
/// stand in a plane: their curves, or else their text, associated with what they mean or with the part. A text is the
/// description of the association.
class AnnotatedModel : public StepPhase
{
public:
    explicit AnnotatedModel(DressedModel&& model);
};

/// A draughting model for each view: its camera, and what the view names (drawings of callouts among it), or else the
/// whole product. The header is filled.
class FinishedModel : public StepPhase
{
public:
    explicit FinishedModel(AnnotatedModel&& model);

    /// Throws std::runtime_error when Open CASCADE refuses, and OutputError when the output does.
    void Write(Output& out) const;
};

}  // namespace KVR
