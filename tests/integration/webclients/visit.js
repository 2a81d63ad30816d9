// What a web page does with the files of packages, below the URL `base`. Runs in browsers and in Node.js.
// Rejects with the first thing that is not as it should be. `fetchMany` is used for many requests at once.
async function visit(base, fetchMany = fetch) {
    const largeFile = 8 << 20;
    const ask = (name, options) => fetch(new URL(name, base), { cache: "no-store", ...options });
    const text = async (name) => (await ask(name)).text();
    const expect = (what, seen, wanted) => {
        if (seen !== wanted)
            throw new Error(`${what}: ${seen} for ${wanted}`);
    };

    for (let i = 0; i < 20; ++i)
        expect("one after the other", await text(`small/${i}`), `content of ${i}\n`);

    const head = await ask("picture.svg", { method: "HEAD" });
    expect("head, type", head.headers.get("content-type"), "image/svg+xml");
    expect("head, length", Number(head.headers.get("content-length")), largeFile);
    expect("head, body", (await head.blob()).size, 0);
    expect("after head", await text("small/1"), "content of 1\n");

    const many = Array.from({ length: 200 }, (_, i) => fetchMany(new URL(`small/${i}`, base)));
    for (let i = 0; i < many.length; ++i)
        expect("many", await (await many[i]).text(), `content of ${i}\n`);

    const waiting = new AbortController();
    const never = ask("never", { signal: waiting.signal }).catch((error) => error.name);
    const later = await Promise.all([1, 2, 3].map(() => text("later"))); // answered when the third has come
    expect("later", later.join(), "content of 3\n,content of 3\n,content of 3\n");
    waiting.abort();
    expect("given up", await never, "AbortError");

    for (let i = 0; i < 10; ++i) {
        const reading = new AbortController();
        const answer = await ask("picture.svg", { signal: reading.signal });
        const reader = answer.body.getReader();
        expect("first piece", (await reader.read()).done, false);
        reading.abort();
        expect("aborted", await reader.read().catch((error) => error.name), "AbortError");
        expect("after abort", await text(`small/${i}`), `content of ${i}\n`);
    }

    const picture = new Uint8Array(await (await ask("picture.svg")).arrayBuffer());
    expect("picture", picture.length, largeFile);
    expect("end of picture", picture.lastIndexOf(">".charCodeAt()), largeFile - 1);

    // A connection is of no further use after another code than 200: the server refuses its next request.
    const statusOnSoundConnection = async (...request) => {
        for (let tries = 0; tries < 10; ++tries) {
            const { status } = await ask(...request);
            if (status !== 400)
                return status;
        }
        return "no answer";
    };
    const remove = { method: "DELETE" };
    for (const [status, ...request] of [[502, "away"], [404, "../unknown/owl"], [405, "small/1", remove], [200, "missing"]])
        expect(request[0], await statusOnSoundConnection(...request), status);
}

// Tells the server what came of the visit, in letters that need no escapes.
async function report(base, outcome) {
    const letters = String(outcome).replace(/[^A-Za-z0-9.]+/g, "-");
    let answer;
    do {
        answer = await fetch(new URL(`report/${letters}`, base));
    } while (answer.status === 400); // came after a failure
}
