// Visits the URL given. Of many requests at once, several are on their way over each of a few connections.
"use strict";
const fs = require("fs");
const path = require("path");
const vm = require("vm");
const undici = require("undici");

// The own fetch() of Debian's Node.js 18 loses an abort now and then.
globalThis.fetch = undici.fetch;
vm.runInThisContext(fs.readFileSync(path.join(__dirname, "visit.js")));

const base = process.argv[2];
const dispatcher = new undici.Pool(new URL(base).origin, { connections: 4, pipelining: 16 });
let underWay = 0;
const fetchMany = async (url) => {
    const answer = await undici.fetch(url, { dispatcher });
    underWay = Math.max(underWay, dispatcher.stats.running);
    return answer;
};
visit(base, fetchMany)
    .then(() => report(base, underWay > 4 ? "well" : `only ${underWay} under way`))
    .catch((error) => report(base, error.cause || error));
