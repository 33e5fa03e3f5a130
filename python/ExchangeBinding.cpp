#include <pybind11/stl.h>

#include "exchange/CertifyModel.h"
#include "exchange/ConvertModel.h"
#include "exchange/DrawPicture.h"
#include "framework/api/Exception.h"
#include "inspect/Check.h"
#include "python/Bindings.h"
#include "python/Cancelled.h"
#include "python/SceneSource.h"
#include "python/Units.h"

namespace KVR::Python
{

namespace
{

// The options that Python gives by name; what is not there stays as it is.
class Arguments
{
public:
    explicit Arguments(py::dict const& given) : m_given(given.attr("copy")()) {}

    template <class T>
    void Take(char const* name, T& target)
    {
        if (m_given.contains(name))
            target = m_given.attr("pop")(name).template cast<T>();
    }
    void Take(char const* name, UnitTypeEnum& target)
    {
        if (m_given.contains(name))
            target = UnitOfName(m_given.attr("pop")(name).cast<std::string>());
    }
    void Take(char const* name, std::optional<UnitTypeEnum>& target)
    {
        UnitTypeEnum unit = kUnitType_Unknown;
        Take(name, unit);
        if (unit != kUnitType_Unknown)
            target = unit;
    }
    void Take(char const* name, std::optional<UpAxis>& target)
    {
        std::string axis;
        Take(name, axis);
        if (axis.empty())
            return;
        if (axis != "x" && axis != "y" && axis != "z")
            throw py::value_error("there is no axis '" + axis + "'");
        target = static_cast<UpAxis>(axis.front() - 'x');
    }
    void Take(MeshQuality& quality)
    {
        Take("deflection", quality.deflection.value);
        bool isLength = false;
        Take("deflection_is_length", isLength);
        quality.deflection.isFraction = !isLength;
        Take("angle", quality.angle);
        Take("relative", quality.isRelative);
    }
    void Take(SceneOptions& options)
    {
        Take("prefix", options.prefix);
        Take("insecure", options.insecure);
        Take("allow_dtd", options.allowDtd);
        Take("strict", options.strict);
        Take("max_memory", options.maxMemory);
    }
    void Take(ImportOptions& options)
    {
        Take("meshes", options.withMeshes);
        Take("bodies", options.withBreps);
        Take("as_text", options.asText);
        Take("annotations", options.withAnnotations);
        Take("unit", options.unit);
        Take("up", options.up);
        Take("crease_angle", options.creaseAngle);
        Take("lenient", options.isLenient);
        Take("report", options.reportPath);
    }
    void Take(ExportOptions& options)
    {
        Take("only", options.filter.only);
        Take("hide", options.filter.hide);
        Take("view", options.filter.view);
        Take("hidden_nodes", options.hiddenNodes);
        Take("compress", options.compress);
        Take("mesh_faces", options.meshFaces);
        Take("source_name", options.sourceName);
        Take("target_unit", options.unit);
    }
    // All that a conversion takes: what is said twice, for both steps.
    ConvertOptions Conversion()
    {
        ConvertOptions options;
        Take(options.import);
        Take(options.exportation);
        Take(options.scene);
        Take(options.import.quality);
        options.exportation.quality = options.import.quality;
        Take("force", options.import.force);
        options.exportation.force = options.import.force;
        Take("timeout", options.import.timeout);
        options.exportation.timeout = options.import.timeout;
        Take("scene", options.scenePath);
        return options;
    }
    // Throws TypeError for a name that nothing has taken.
    void Finish() const
    {
        if (!m_given.empty())
            throw py::type_error("there is no option " + py::repr(m_given.begin()->first).cast<std::string>());
    }

private:
    py::dict m_given;
};

// Asks a callback of Python, which must outlive it, and whether the user has pressed Ctrl-C.
Progress ProgressOf(py::object const& callback)
{
    return [&callback](ProgressReport const& report)
    {
        py::gil_scoped_acquire const acquired;
        if (PyErr_CheckSignals() != 0)
            throw py::error_already_set();
        if (callback.is_none())
            return true;
        py::object const answer = callback(report.stage, report.fraction, report.whole);
        return answer.is_none() || answer.cast<bool>();
    };
}

// What an operation answers, without the interpreter's lock; its child processes are made while nobody reads a scene.
template <class Operation>
auto Done(Operation operation)
{
    auto result = [&]
    {
        py::gil_scoped_release const released;
        ReadingLock const lock;
        return operation();
    }();
    if (result.outcome == Outcome::kCancelled)
        throw Cancelled();
    if (result.outcome == Outcome::kFailed)
        throw GeneralException(UTF8String(result.failure));
    return result;
}

py::tuple Texts(std::vector<std::string> const& texts)
{
    py::tuple result(texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
        result[i] = Text(texts[i]);
    return result;
}

py::dict DictOf(std::optional<ImportResult> const& imported, std::vector<std::string> const& exportRemarks)
{
    py::dict result;
    std::vector<std::string> remarks = imported ? imported->remarks : std::vector<std::string>();
    remarks.insert(remarks.end(), exportRemarks.begin(), exportRemarks.end());
    result["remarks"] = Texts(remarks);
    py::dict losses;
    py::dict counts;
    if (imported)
    {
        for (ImportLoss const& loss : imported->losses)
            losses[Text(loss.kind)] = loss.count;
        counts["assemblies"] = imported->counts.assemblies;
        counts["parts"] = imported->counts.parts;
        counts["instances"] = imported->counts.instances;
        counts["bodies"] = imported->counts.bodies;
        counts["triangles"] = imported->counts.triangles;
    }
    result["losses"] = losses;
    result["counts"] = counts;
    return result;
}

py::dict Convert(std::string const& model, std::string const& target, py::dict const& given, py::object const& progress)
{
    Arguments arguments(given);
    ConvertOptions const options = arguments.Conversion();
    arguments.Finish();
    ConvertResult const result = Done([&] { return ConvertModel(model, target, options, ProgressOf(progress)); });
    return DictOf(result.imported, result.exported.remarks);
}

py::dict Import(std::string const& model, std::string const& target, py::dict const& given, py::object const& progress)
{
    Arguments arguments(given);
    ImportOptions const options = arguments.Conversion().import;
    arguments.Finish();
    return DictOf(Done([&] { return ImportModel(model, target, options, ProgressOf(progress)); }), {});
}

py::dict Draw(std::string const& source, std::string const& target, py::dict const& given, py::object const& progress)
{
    Arguments arguments(given);
    PictureOptions options;
    arguments.Take("width", options.width);
    arguments.Take("height", options.height);
    arguments.Take("background", options.background);
    arguments.Take("view", options.view);
    options.source = arguments.Conversion();
    arguments.Finish();
    ConvertResult const result = Done([&] { return DrawPicture(source, target, options, ProgressOf(progress)); });
    return DictOf(result.imported, result.exported.remarks);
}

py::dict Certify(std::string const& model, std::optional<std::string> const& other, std::optional<unsigned> timeout,
                 py::object const& progress)
{
    CertifyOptions const options{false, timeout};
    CertifyResult const result = Done(
        [&]
        {
            return other ? CertifyAgainst(model, *other, options, ProgressOf(progress))
                         : CertifyModel(model, options, ProgressOf(progress));
        });
    py::list rows;
    for (CertificateRow const& row : result.rows)
    {
        rows.append(py::dict(py::arg("name") = Text(row.name), py::arg("values") = Texts(row.values),
                             py::arg("difference") = row.difference, py::arg("is_good") = row.isGood,
                             py::arg("differences") = Texts(row.differences)));
    }
    return py::dict(py::arg("is_equal") = result.isEqual, py::arg("stages") = Texts(result.stages),
                    py::arg("rows") = rows, py::arg("absences") = Texts(result.absences),
                    py::arg("remarks") = Texts(result.remarks));
}

py::dict DictOf(Finding const& finding)
{
    py::list fix;
    for (Edit const& edit : finding.fix)
        fix.append(py::make_tuple(edit.begin, edit.end, Text(edit.text)));
    return py::dict(py::arg("rule") = Text(finding.rule->id), py::arg("name") = Text(finding.rule->name),
                    py::arg("sentence") = Text(finding.rule->sentence),
                    py::arg("severity") = Text(TextOf(finding.rule->severity)), py::arg("file") = Text(finding.file),
                    py::arg("line") = finding.line, py::arg("column") = finding.column,
                    py::arg("object_id") = Text(finding.objectId), py::arg("path") = Text(finding.path),
                    py::arg("found") = Text(finding.found), py::arg("read_as") = Text(finding.readAs),
                    py::arg("meant") = Text(finding.meant), py::arg("reasons") = Texts(finding.reasons),
                    py::arg("fix") = py::tuple(fix));
}

py::list Check(std::string const& path, std::vector<std::string> rules, std::vector<std::string> noRules, bool allowDtd,
               bool insecure)
{
    CheckOptions options{allowDtd, insecure, false, std::move(rules), std::move(noRules)};
    CheckResult result;
    {
        py::gil_scoped_release const released;
        ReadingLock const lock;
        result = CheckScene(path, options);
    }
    py::list findings;
    for (Finding const& finding : result.findings)
        findings.append(DictOf(finding));
    return findings;
}

}  // namespace

void BindExchange(py::module_& module)
{
    module.def("convert", &Convert, KVR_DOC(Free, ConvertModel));
    module.def("import_model", &Import, KVR_DOC(Free, ImportModel));
    module.def("picture", &Draw, KVR_DOC(Free, DrawPicture));
    module.def("certify", &Certify, KVR_DOC(Free, CertifyModel));
    module.def("check", &Check, KVR_DOC(Free, CheckScene));
}

}  // namespace KVR::Python
