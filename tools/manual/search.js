"use strict";
// Looks for the words of the box in all sections of the manual: those whose heading holds one come first.
const MaxFound = 20;
const box = document.getElementById("search");
const found = document.getElementById("found");

// Without capitals and accents, one character for one, so that places in it are places in the text.
const bare = text => Array.from(text, c => c.normalize("NFD")[0].toLowerCase()[0]).join("");
const texts = sections.map(([, head, body]) => [bare(head), bare(body)]);

// The text around the first word, with every word marked.
function snippet(body, plain, words) {
    const places = words.map(word => plain.indexOf(word)).filter(place => place >= 0);
    const at = places.length ? Math.min(...places) : 0;
    const from = at < 40 ? 0 : body.lastIndexOf(" ", at - 30) + 1;
    const room = body.lastIndexOf(" ", from + 140);
    const to = body.length <= from + 140 || room <= at ? body.length : room;
    const line = document.createElement("small");
    line.append(from > 0 ? "… " : "");
    for (let i = from; i < to;) {
        const word = words.find(word => plain.startsWith(word, i));
        if (word) {
            const marked = document.createElement("mark");
            marked.textContent = body.substr(i, word.length);
            line.append(marked);
        } else
            line.append(body[i]);
        i += word ? word.length : 1;
    }
    line.append(to < body.length ? " …" : "");
    return line;
}

function look() {
    const words = bare(box.value).split(/\s+/).filter(word => word);
    found.hidden = !words.length;
    list.hidden = !found.hidden;
    const hits = [];
    texts.forEach(([head, body], i) => {
        if (words.every(word => head.includes(word) || body.includes(word)))
            hits.push([words.filter(word => head.includes(word)).length, i]);
    });
    hits.sort((a, b) => b[0] - a[0] || a[1] - b[1]);
    found.replaceChildren(...hits.slice(0, MaxFound).map(([, i]) => {
        const [address, head, body] = sections[i];
        const link = document.createElement("a");
        link.href = address;
        const title = document.createElement("b");
        title.textContent = head;
        link.append(title, snippet(body, texts[i][1], words));
        const item = document.createElement("li");
        item.append(link);
        return item;
    }));
    if (!hits.length)
        found.textContent = "Nothing found.";
}

// On a narrow screen the page comes first, and the list of the others unfolds.
const list = document.getElementById("list");
const narrow = matchMedia("(max-width: 52rem)");
const fold = () => { list.open = !narrow.matches; };
narrow.addEventListener("change", fold);
fold();

box.hidden = false;
box.addEventListener("input", look);
box.addEventListener("keydown", event => {
    if (event.key === "Enter")
        found.querySelector("a")?.click();
    else if (event.key === "Escape") {
        box.value = "";
        look();
    }
});
look();
