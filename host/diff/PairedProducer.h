#pragma once

#include <string>

#include "framework/api/IProducer.h"

namespace KVR
{

/// Serves three scenes as one: a frame whose instances name objects of the two others. All have begun their processes
/// and outlive this; it ends none of them.
class PairedProducer final : public IProducer
{
public:
    /// What the ids of the frame begin with, and those of the scene as it was.
    static constexpr char kFrame[] = "kvr-diff:";
    static constexpr char kWas[] = "kvr-diff:was:";

    PairedProducer(IProducer& frame, IProducer& was, IProducer& is) : m_frame(frame), m_was(was), m_is(is) {}

    FileQueryResult const* QueryFile() override { return m_frame.QueryFile(); }
    RootId RootObjectId() const override { return m_frame.RootObjectId(); }
    /// That of the scene as it is.
    IUniverse const* LoadUniverse() override { return m_is.LoadUniverse(); }
    IObject* Load(UTF8String const& id) override;
    void Dispose(UTF8String const&) override {}
    void BeginProcess(IdSet const&, FilterOptions const*, EventManager const*) override {}
    void EndProcess() override {}

private:
    IProducer& m_frame;
    IProducer& m_was;
    IProducer& m_is;
};

}  // namespace KVR
