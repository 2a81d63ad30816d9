// Canonical JSON after RFC 8785, independent of the library: reads JSON texts from standard input, one a line, and
// writes the canonical form of each on a line of its own. JSON.stringify prints literals as the RFC wants them.
const canonical = value => {
    if (Array.isArray(value))
        return `[${value.map(canonical).join(",")}]`;
    if (value === null || typeof value !== "object")
        return JSON.stringify(value);
    const members = Object.keys(value).sort().map(key => `${JSON.stringify(key)}:${canonical(value[key])}`);
    return `{${members.join(",")}}`;
};

for (const line of require("fs").readFileSync(0, "utf8").split("\n")) {
    if (line)
        console.log(canonical(JSON.parse(line)));
}
