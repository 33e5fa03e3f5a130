#include "inspect/Explain.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>

#include "describe/Ask.h"
#include "describe/Tables.h"
#include "framework/api/Exception.h"
#include "framework/api/IOUtil.h"
#include "framework/api/IObject.h"
#include "framework/api/IdSet.h"
#include "framework/api/UTF16String.h"
#include "framework/xml_util/DocumentPolicy.h"
#include "inspect/SceneCheck.h"
#include "inspect/document/ReadRecord.h"
#include "inspect/document/SpotPlaces.h"
#include "inspect/explain/AnswerSources.h"
#include "inspect/explain/ObjectAnswers.h"
#include "inspect/explain/Occurrences.h"
#include "inspect/explain/SkeletonScene.h"
#include "producer/XMLProducer.h"
#include "producer/XMLProducerOptions.h"
#include "scene/NearestNames.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

// A scene that was read under an observer.
class ReadScene
{
public:
    ReadScene(std::string const& path, ExplainOptions const& options)
        : m_path(path), m_isInsecure(options.insecure), m_producer(UTF16String(UTF8String(path)), &m_options)
    {
        DocumentPolicy policy = DocumentPolicy::Untrusted();
        if (options.allowDtd)
        {
            policy.documentTypes = true;
            policy.otherDocuments = DocumentPolicy::OtherDocuments::kFiles;
        }
        SetDocumentPolicy(policy);
        m_options.SetWantRestoreInsecureGMKFiles(options.insecure);
    }

    // Throws what the producer throws.
    void Read()
    {
        ReadObserverScope const observed(m_record);
        static_cast<void>(m_producer.QueryFile());
        m_producer.BeginProcess(IdSet(), nullptr, nullptr);
    }

    void Explain(std::string const& name, ExplainOptions const& options, Explanation& explanation)
    {
        std::size_t const slash = name.rfind('/');
        bool isPath = false;
        IObject* object = m_producer.Load(UTF8String(name));
        if (!object && slash != std::string::npos)
        {
            object = m_producer.Load(UTF8String(name.substr(slash + 1)));
            isPath = true;
        }
        if (!object)
            return TellNearest(isPath ? name.substr(slash + 1) : name, explanation);
        DescribeObject(*object, explanation);
        if (auto const root = Ask([&] { return std::string(m_producer.RootObjectId().Id().View()); }))
            FindOccurrences(m_producer, *root, isPath ? name : std::string(), options.most, explanation);
        if (isPath && explanation.occurrences.empty())
        {
            explanation.problem = explanation.id + " does not occur at " + name;
            return;
        }
        DOMNode const* const element = ElementOf(*object);
        FindRecords(explanation);
        FindReferences(options.most, explanation);
        if (!element)
            return;
        FindPlace(element, explanation);
        SkeletonScene const skeleton(m_path, Root(element), element, explanation.id, m_record, m_isInsecure);
        explanation.answers = ExplainAnswers(*object, m_producer, element, skeleton, !explanation.records.empty());
    }

private:
    void TellNearest(std::string const& name, Explanation& explanation) const
    {
        constexpr std::size_t kMost = 3;
        explanation.problem = "no object has the id " + name;
        NearestNames nearest(name, kMost, std::max<std::size_t>(1, 2 * std::min<std::size_t>(name.size(), 32) / 5));
        UTF16String const label{UTF8String(name)};
        for (auto const& [element, object] : m_record.Objects())
        {
            nearest.Add(object->Id().View());
            if (object->Label() == label && explanation.nearest.size() < kMost)
                explanation.nearest.emplace_back(object->Id().View());
        }
        if (explanation.nearest.empty())
            explanation.nearest = nearest.Names();
    }

    static void DescribeObject(IObject& object, Explanation& explanation)
    {
        explanation.id = object.Id().View();
        explanation.label = UTF8String(object.Label()).View();
        if (Interface const* const interface = DescribedObject::Of(object).interface)
            explanation.className = interface->name;
    }

    DOMNode const* ElementOf(IObject const& object) const
    {
        for (auto const& [element, registered] : m_record.Objects())
            if (registered == &object)
                return element;
        return nullptr;
    }

    static DOMNode const* Root(DOMNode const* element)
    {
        while (element->getParentNode() && element->getParentNode()->getNodeType() == DOMNode::ELEMENT_NODE)
            element = element->getParentNode();
        return element;
    }

    void FindPlace(DOMNode const* element, Explanation& explanation) const
    {
        SpotPlaces places(m_path, Root(element), {element});
        DocumentPlace const place = places.PlaceOf({element, SpotPart::kStartTag, nullptr});
        ByteRange const endTagName = places.PlaceOf({element, SpotPart::kName, nullptr}).endTagName;
        explanation.elementPath = PathOf(element);
        FileRange& range = explanation.element;
        range.file = m_path;
        range.firstLine = range.lastLine = place.line;
        range.begin = place.bytes.begin;
        // A name in an end tag has its ">" behind it, mostly at once.
        range.end = endTagName.end > 0 ? endTagName.end + 1 : place.bytes.end;
        range.lastLine += LinesIn(range.begin, range.end);
    }

    std::uint64_t LinesIn(std::uint64_t begin, std::uint64_t end) const
    {
        FilePtr const file(UTF8String(m_path), "rb");
        if (!file || std::fseek(file, static_cast<long>(begin), SEEK_SET) != 0)
            return 0;
        std::uint64_t lines = 0;
        std::string piece;
        for (; begin < end; begin += piece.size())
        {
            piece.resize(static_cast<std::size_t>(std::min<std::uint64_t>(end - begin, std::uint64_t{1} << 16U)));
            piece.resize(std::fread(piece.data(), 1, piece.size(), file));
            if (piece.empty())
                break;
            lines += static_cast<std::uint64_t>(std::count(piece.begin(), piece.end(), '\n'));
        }
        return lines;
    }

    void FindRecords(Explanation& explanation) const
    {
        for (SectionRecord const& section : m_record.Sections())
            for (StoreRecord const& stored : section.records)
                if (stored.id.View() == explanation.id && (stored.isKept || stored.kind == "segments"))
                    explanation.records.push_back(
                        {std::string(stored.kind), {section.path, 0, 0, stored.begin, stored.end}});
    }

    void FindReferences(std::size_t most, Explanation& explanation) const
    {
        for (auto const& [element, registered] : m_record.Objects())
        {
            IObject* const object = m_producer.Load(registered->Id());
            if (object != registered)
                continue;
            std::vector<std::string> operations = OperationsNaming(*object, explanation.id);
            if (operations.empty() || ++explanation.referenceCount > most)
                continue;
            ExplainedReference& reference = explanation.references.emplace_back();
            reference.id = object->Id().View();
            if (Interface const* const interface = DescribedObject::Of(*object).interface)
                reference.className = interface->name;
            reference.operations = std::move(operations);
        }
    }

    std::string m_path;
    bool m_isInsecure;
    ReadRecord m_record;
    XMLProducerOptions m_options;
    mutable XMLProducer m_producer;
};

}  // namespace

Explanation ExplainObject(std::string const& path, std::string const& name, ExplainOptions const& options)
{
    Explanation explanation;
    try
    {
        ReadScene scene(path, options);
        scene.Read();
        scene.Explain(name, options, explanation);
    }
    catch (std::bad_alloc const&)
    {
        throw;
    }
    catch (FileException const& exception)
    {
        std::string const file(UTF8String(exception.FileName()).View());
        explanation.isParsed = file != path;
        explanation.problem = file == path ? "the document cannot be parsed" : file + " cannot be read";
    }
    catch (std::exception const&)
    {
        explanation.problem = "a side file claims more than it holds, and nothing is served";
    }
    return explanation;
}

char const* TextOf(AnswerSource source) noexcept
{
    switch (source)
    {
        case AnswerSource::kAttribute:
            return "attribute";
        case AnswerSource::kElement:
            return "element";
        case AnswerSource::kStore:
            return "store";
        case AnswerSource::kPropertyFile:
            return "property file";
        case AnswerSource::kDefault:
            return "default";
        case AnswerSource::kOther:
            return "other";
        case AnswerSource::kUnknown:
            break;
    }
    return "unknown";
}

}  // namespace KVR
