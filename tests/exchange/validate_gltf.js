// Validates glTF files: "node validate_gltf.js VALIDATOR FILE...". Prints each error and warning, and ends with status 1
// when there is an error.
const fs = require('fs');
const path = require('path');

const [validatorPath, ...files] = process.argv.slice(2);
const validator = require(path.resolve(validatorPath));

async function Validate(file)
{
    const report = await validator.validateBytes(new Uint8Array(fs.readFileSync(file)), {
        uri: path.basename(file),
        maxIssues: 100,
        externalResourceFunction: async (uri) =>
            new Uint8Array(fs.readFileSync(path.join(path.dirname(file), decodeURIComponent(uri)))),
    });
    for (const message of report.issues.messages.filter((entry) => entry.severity < 2))
        console.log(`${file}: ${message.code} ${message.pointer || ''} ${message.message}`);
    const {numErrors, numWarnings} = report.issues;
    console.log(`${file}: ${numErrors} errors, ${numWarnings} warnings, ${report.info.totalTriangleCount} triangles`);
    return numErrors;
}

(async () => {
    let errors = 0;
    for (const file of files)
        errors += await Validate(file);
    process.exit(errors === 0 && files.length > 0 ? 0 : 1);
})().catch((error) => {
    console.log(String(error));
    process.exit(2);
});
