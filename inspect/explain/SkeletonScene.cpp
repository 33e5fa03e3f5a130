#include "inspect/explain/SkeletonScene.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <new>
#include <system_error>
#include <unordered_map>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "framework/api/IOUtil.h"
#include "framework/api/IdSet.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/SideFilePath.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "inspect/SceneCheck.h"
#include "inspect/document/ReadRecord.h"
#include "producer/XMLProducer.h"
#include "producer/XMLProducerOptions.h"

namespace KVR
{

namespace fs = std::filesystem;

namespace
{

using xercesc::DOMNode;

// Of what stands beside the element, and in its sets, so many are kept.
constexpr unsigned kMostBeside = 20;
constexpr unsigned kDeepest = 100;
// A store that is larger is read only for a record of the object itself.
constexpr std::uintmax_t kLargestBeside = std::uintmax_t{16} << 20U;
// So many bytes of stores are read in all, and of a reading without any that many count.
constexpr std::uintmax_t kMostBytes = std::uintmax_t{2} << 30U;
constexpr std::uintmax_t kLeastBytes = std::uintmax_t{1} << 20U;

std::string Narrow(XMLCh const* text)
{
    return std::string(XMLStrUtil::XMLStrToAStr(text).View());
}

void PutText(std::string& text, std::string const& value)
{
    for (char const c : value)
    {
        if (c == '&' || c == '<' || c == '>' || c == '"' || c == '\n' || c == '\r' || c == '\t')
            text += "&#" + std::to_string(static_cast<int>(c)) + ";";
        else
            text += c;
    }
}

// What an element and those in it may name: the texts of attributes, and the words in them.
void CollectTexts(DOMNode const* element, std::unordered_set<std::string>& texts, unsigned depth)
{
    xercesc::DOMNamedNodeMap const* const attributes = element->getAttributes();
    for (XMLSize_t i = 0; i < attributes->getLength(); ++i)
    {
        std::string const text = Narrow(attributes->item(i)->getNodeValue());
        for (std::size_t begin = 0, words = 0; begin < text.size() && words < 2 * kMostBeside; ++words)
        {
            std::size_t const end = std::min(text.find_first_of(" ,;", begin), text.size());
            texts.insert(text.substr(begin, end - begin));
            begin = end + 1;
        }
        texts.insert(text);
    }
    unsigned kept = 0;
    for (DOMNode const* const child : Children(element))
        if (depth < kDeepest && ++kept <= kMostBeside)
            CollectTexts(child, texts, depth + 1);
}

bool Write(std::string const& path, std::string const& text)
{
    FilePtr const file(UTF8String(path), "wb");
    return file && std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0;
}

}  // namespace

SkeletonScene::SkeletonScene(std::string scenePath, DOMNode const* root, DOMNode const* element, std::string id,
                             ReadRecord const& record, bool restoresInsecure)
    : m_scenePath(std::move(scenePath)),
      m_root(root),
      m_element(element),
      m_id(std::move(id)),
      m_restoresInsecure(restoresInsecure)
{
    try
    {
        m_folder = m_scratch.emplace(fs::temp_directory_path(), "kvr-explain-").Path().string();
    }
    catch (std::system_error const&)
    {
        // Without a folder nothing is read anew.
    }
    for (DOMNode const* node = element; node; node = node->getParentNode())
        m_chain.insert(node);
    ChooseElements(record);
}

void SkeletonScene::ChooseElements(ReadRecord const& record)
{
    std::unordered_set<std::string> texts{m_id};
    CollectTexts(m_element, texts, 0);
    for (DOMNode const* const child : Children(m_root))
        if (!m_chain.contains(child) && texts.contains(AttributeOf(child, Names::ID)))
            m_named.insert(child);
    for (SectionRecord const& section : record.Sections())
    {
        std::error_code error;
        std::uintmax_t const size = fs::file_size(section.path, error);
        if (error)
            continue;
        bool const isNeeded =
            std::any_of(section.records.begin(), section.records.end(),
                        [&](StoreRecord const& stored) {
                            return stored.id.View() == m_id ||
                                   (size <= kLargestBeside && texts.contains(std::string(stored.id.View())));
                        });
        std::string const path = fs::relative(section.path, m_folder, error).string();
        if (!isNeeded || error)
            continue;
        m_sections.emplace_back(section.element, path);
        m_storeBytes += size;
    }
}

std::optional<std::vector<ObjectAnswer>> SkeletonScene::Read(Change const& change, ReadingTrace* trace,
                                                             std::function<void()> const& use) const
{
    std::string const path = m_folder + "/scene.xml";
    std::string const properties = m_folder + "/scene" + kPropertyFileExtension.Narrow();
    if (m_folder.empty() || !Write(path, Document(change)))
        return std::nullopt;
    std::error_code error;
    fs::remove(properties, error);
    if (change.hasProperties)
        fs::create_symlink(fs::absolute(fs::path(m_scenePath)).replace_extension(kPropertyFileExtension.Narrow()),
                           properties, error);
    XMLProducerOptions options;
    options.SetWantRestoreInsecureGMKFiles(m_restoresInsecure);
    XMLProducer producer(UTF16String(UTF8String(path)), &options);
    try
    {
        std::optional<ReadObserverScope> observed;
        if (trace)
            observed.emplace(*trace);
        static_cast<void>(producer.QueryFile());
        producer.BeginProcess(IdSet(), nullptr, nullptr);
    }
    catch (std::bad_alloc const&)
    {
        throw;
    }
    catch (std::exception const&)
    {
        return std::nullopt;
    }
    IObject* const object = producer.Load(UTF8String(m_id));
    if (!object)
        return std::nullopt;
    if (use)
        use();
    return AnswersOf(*object, producer);
}

std::size_t SkeletonScene::MostReads() const noexcept
{
    return static_cast<std::size_t>(kMostBytes / (kLeastBytes + m_storeBytes)) + 1;
}

std::vector<DOMNode const*> SkeletonScene::Sections() const
{
    std::vector<DOMNode const*> sections;
    for (auto const& [element, path] : m_sections)
        sections.push_back(element);
    return sections;
}

std::string SkeletonScene::Document(Change const& change) const
{
    std::string text;
    std::string const name = NameOf(m_root);
    text += "<" + name;
    PutAttributes(text, m_root, change);
    text += ">\n";
    for (DOMNode const* const child : Children(m_root))
    {
        if (m_chain.contains(child))
        {
            Put(text, child, change, 0);
            continue;
        }
        bool const isSection = std::any_of(m_sections.begin(), m_sections.end(),
                                           [&](auto const& section) { return section.first == child; });
        if ((!isSection && !m_named.contains(child)) || child == change.child)
            continue;
        for (bool const isTwin : {false, true})
        {
            if (isTwin && isSection)
                continue;
            text += "<" + NameOf(child);
            PutAttributes(text, child, change, isTwin);
            text += "/>\n";
        }
    }
    return text + "</" + name + ">\n";
}

void SkeletonScene::PutAttributes(std::string& text, DOMNode const* element, Change const& change, bool isTwin) const
{
    auto const section =
        std::find_if(m_sections.begin(), m_sections.end(), [&](auto const& each) { return each.first == element; });
    xercesc::DOMNamedNodeMap const* const attributes = element->getAttributes();
    for (XMLSize_t i = 0; i < attributes->getLength(); ++i)
    {
        std::string const name = Narrow(attributes->item(i)->getNodeName());
        std::string value = Narrow(attributes->item(i)->getNodeValue());
        if (section != m_sections.end() && name == std::string_view(Names::Path))
            value = section->second;
        if (isTwin && name == std::string_view(Names::ID))
            value += "~";
        if (element == change.changed && name == change.attribute)
        {
            if (!change.text)
                continue;
            value = *change.text;
        }
        text += " " + name + "=\"";
        PutText(text, value);
        text += "\"";
    }
}

void SkeletonScene::Put(std::string& text, DOMNode const* element, Change const& change, unsigned depth) const
{
    if (element == change.child)
        return;
    std::string const name = NameOf(element);
    text += "<" + name;
    PutAttributes(text, element, change);
    text += ">";
    if (depth < kDeepest)
        PutChildren(text, element, change, depth);
    text += "</" + name + ">";
}

// Of what the element stands in, objects beside it are left out.
void SkeletonScene::PutChildren(std::string& text, DOMNode const* element, Change const& change, unsigned depth) const
{
    bool const isAround = m_chain.contains(element) && element != m_element;
    unsigned kept = 0;
    for (DOMNode const* child = element->getFirstChild(); child; child = child->getNextSibling())
    {
        if (child->getNodeType() == DOMNode::TEXT_NODE || child->getNodeType() == DOMNode::CDATA_SECTION_NODE)
            PutText(text, Narrow(child->getNodeValue()));
        if (!IsElement(child))
            continue;
        bool const isObject = !AttributeOf(child, Names::ID).empty();
        bool const isBeside = isAround ? isObject : element != m_element && ++kept > kMostBeside;
        if (m_chain.contains(child) || !isBeside)
            Put(text, child, change, depth + 1);
    }
}

}  // namespace KVR
