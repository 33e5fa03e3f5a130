#pragma once

#include "describe/AnswerVisitor.h"

namespace KVR
{

/// Wants everything and keeps nothing: for those that ask for the asking's sake, and a base of those that want little.
class SilentAnswers : public AnswerVisitor
{
public:
    bool BeginMember(Row const&) override { return true; }
    bool BeginBeyond(Row const&) override { return true; }
    void Null() override {}
    void Bool(bool) override {}
    void Integer(long long) override {}
    void Unsigned(unsigned long long) override {}
    void Number(double) override {}
    void Text(std::string_view) override {}
    void Bytes(void const*, std::size_t) override {}
    void BeginList(Layout) override {}
    void EndList() override {}
    void BeginMap() override {}
    void Key(std::string_view) override {}
    void EndMap() override {}
    void BeginObject(Interface const&) override {}
    void EndObject() override {}
};

}  // namespace KVR
