const SVG_SPACE = "http://www.w3.org/2000/svg";
const PLOT = { width: 320, height: 130, left: 8, right: 8, top: 6, bottom: 20 };

let data = null;

function make(name, attributes = {}, ...children) {
    const element = document.createElement(name);
    for (const [key, value] of Object.entries(attributes)) {
        element.setAttribute(key, value);
    }
    element.append(...children);
    return element;
}

function draw(parent, name, attributes, text = "") {
    const element = document.createElementNS(SVG_SPACE, name);
    for (const [key, value] of Object.entries(attributes)) {
        element.setAttribute(key, String(value));
    }
    element.textContent = text;
    parent.append(element);
    return element;
}

// ---- numbers as texts

const isNumber = (value) => typeof value === "number";

/** Decibels; a null means that nothing differs. */
const psnrText = (figures) => (isNumber(figures.psnr) ? `${figures.psnr.toFixed(2)} dB` : "infinite");

/** What isn't equal never reads as 1. */
function ssimText(value) {
    if (!isNumber(value)) {
        return "none";
    }
    return value === 1 ? "1" : Math.min(value, 0.9999).toFixed(4);
}

function levelText(value) {
    const size = Math.abs(value);
    const text = Number.isInteger(value) ? String(value) : size < 0.01 ? value.toPrecision(2) : value.toFixed(2);
    return text.replace("-", "\u2212");
}

/** A signed mean to two digits. */
const shiftText = (value) => (Math.abs(value) < 0.005 ? "0" : levelText(Number(value.toFixed(2))));

/** A share in percent; what isn't quite none or all never reads so. */
function shareText(share) {
    if (share === 0 || share === 1) {
        return `${100 * share} %`;
    }
    const percent = 100 * share;
    return `${percent < 0.1 ? Number(percent.toPrecision(2)) : Math.min(percent, 99.9).toFixed(1)} %`;
}

const sum = (counts) => counts.reduce((all, count) => all + count, 0);

/** The smallest d such that `share` of the samples differ by at most d levels. */
function differenceOfShare(counts, share) {
    const middle = (counts.length - 1) / 2;
    const total = sum(counts);
    let within = counts[middle];
    let d = 0;
    while (within < share * total && d < middle) {
        d += 1;
        within += counts[middle - d] + counts[middle + d];
    }
    return d;
}

/** The level below which `share` of the samples lie. */
function levelOfShare(counts, share) {
    const total = sum(counts);
    let below = 0;
    return counts.findIndex((count) => {
        below += count;
        return below >= share * total;
    });
}

// ---- heading and figures

const kindOf = (picture) =>
    `${picture.bits === 32 ? "float" : `${picture.bits}-bit`} ${picture.colours === 1 ? "grey" : "colour"}${picture.alpha ? " with alpha" : ""}`;

function tile(name, value, small = "") {
    byId("tiles").append(make("li", {}, make("span", {}, name), make("strong", {}, value), make("span", {}, small)));
}

function buildHeading() {
    const { before, after } = data;
    document.title = `${before.name} and ${after.name}`;
    byId("program").textContent = data.program;
    byId("beforeName").textContent = before.name;
    byId("afterName").textContent = after.name;
    const kinds = kindOf(before) === kindOf(after) ? kindOf(before) : `before ${kindOf(before)}, after ${kindOf(after)}`;
    byId("subject").textContent = `${before.width} \u00d7 ${before.height} pixels, ${kinds}`;
    byId("command").textContent = data.command;
    byId("repeat").hidden = false;
    tile("PSNR", psnrText(data), data.identical ? "identical pictures" : "of all channels");
    tile("SSIM", ssimText(data.ssim), isNumber(data.ssim) ? "of the brightness" : "below 11 \u00d7 11 pixels");
    tile("Mean difference", levelText(data.meanDifference), "grey levels of 0 to 255");
    tile("Largest difference", levelText(data.maxDifference), "grey levels");
    tile("Changed", shareText(data.changed), "of all samples");
    byId("tiles").hidden = false;
}

function buildTable() {
    const heads = ["Channel", "PSNR", "SSIM", "Mean", "Largest", "Shift", "Changed"];
    byId("heads").append(...heads.map((head) => make("th", { scope: "col" }, head)));
    const rows = data.channels.length > 1 ? [{ ...data, name: "all" }, ...data.channels] : [{ ...data, ...data.channels[0] }];
    for (const row of rows) {
        const cells = [
            psnrText(row),
            "ssim" in row ? ssimText(row.ssim) : "\u2013",
            levelText(row.meanDifference),
            levelText(row.maxDifference),
            shiftText(row.meanShift),
            shareText(row.changed),
        ];
        byId("rows").append(make("tr", {}, make("th", { scope: "row" }, row.name), ...cells.map((cell) => make("td", {}, cell))));
    }
}

function buildNotes() {
    const alpha = {
        equal: "Alpha is equal in both and does not count.",
        differs: "Alpha differs and does not count.",
        "only before": "Only the picture before has alpha, which does not count.",
        "only after": "Only the picture after has alpha, which does not count.",
    };
    const notes = [alpha[data.alpha]];
    if (data.before.colours !== data.after.colours) {
        notes.push("The grey picture counts as three equal channels.");
    }
    byId("notes").append(...notes.filter(Boolean).map((note) => make("li", {}, note)));

    const shown = [];
    if (data.reduction > 1) {
        shown.push(`Shown at 1/${data.reduction} of ${data.before.width} \u00d7 ${data.before.height} pixels; zoom counts the pixels of this copy.`);
    }
    if (!data.lossless) {
        shown.push("Shown as JPEG copies of quality 92; the difference is that of the files, in grey.");
    }
    if (data.before.bits > 8 || data.after.bits > 8) {
        shown.push("Shown with 8 bits a sample.");
    }
    if (data.alpha !== "none") {
        shown.push("Shown without alpha.");
    }
    if (shown.length) {
        shown.push("All figures are those of the files themselves.");
    }
    byId("shown").textContent = shown.join(" ");
}

// ---- histograms

/** An empty plot with labels along its foot. */
function plotFrame(title, text, labels) {
    const svg = document.createElementNS(SVG_SPACE, "svg");
    svg.setAttribute("viewBox", `0 0 ${PLOT.width} ${PLOT.height}`);
    svg.setAttribute("role", "img");
    svg.setAttribute("aria-label", `${title}. ${text}`);
    const foot = PLOT.height - PLOT.bottom;
    for (const { x, label } of labels) {
        draw(svg, "line", { class: "grid", x1: x, x2: x, y1: PLOT.top, y2: foot });
        const anchor = x < 30 ? "start" : x > PLOT.width - 30 ? "end" : "middle";
        draw(svg, "text", { class: "tick", x, y: PLOT.height - 5, "text-anchor": anchor }, label);
    }
    return { svg, foot, figure: make("figure", {}, make("figcaption", {}, title), svg, make("p", {}, text)) };
}

/** The outline of steps over equal bins, closed along the foot. */
function steps(heights, scaleX, foot) {
    const parts = heights.map((height, bin) => `${scaleX(bin).toFixed(2)} ${(foot - height).toFixed(2)}H${scaleX(bin + 1).toFixed(2)}`);
    return `M${scaleX(0).toFixed(2)} ${foot}L${parts.join("L")}V${foot}Z`;
}

const titleOf = (channel) => channel.name[0].toUpperCase() + channel.name.slice(1);

function levelPlot(channel) {
    const inner = PLOT.width - PLOT.left - PLOT.right;
    const scaleX = (bin) => PLOT.left + (inner * bin) / 256;
    const labels = [0, 64, 128, 192, 255].map((level) => ({ x: scaleX(level + 0.5), label: String(level) }));
    const words = (counts) => `half of the samples at or below ${levelOfShare(counts, 0.5)}`;
    const text = `Before: ${words(channel.before)}; after: ${words(channel.after)}.`;
    const { svg, foot, figure } = plotFrame(titleOf(channel), text, labels);
    // Black and white pile up where a picture is clipped; they may leave the plot.
    const tallest = Math.max(1, ...channel.before.slice(1, 255), ...channel.after.slice(1, 255));
    const room = foot - PLOT.top;
    const heights = (counts) => counts.map((count) => Math.min(room, (room * count) / tallest));
    draw(svg, "path", { class: "fill", d: steps(heights(channel.before), scaleX, foot) });
    draw(svg, "path", { class: "outline", d: steps(heights(channel.after), scaleX, foot) });
    draw(svg, "rect", { class: "frame", x: PLOT.left, y: PLOT.top, width: inner, height: room });
    return figure;
}

function differencePlot(channel, reach) {
    const counts = channel.differences.slice(255 - reach, 256 + reach);
    const inner = PLOT.width - PLOT.left - PLOT.right;
    const scaleX = (bin) => PLOT.left + (inner * bin) / counts.length;
    const ticks = [-reach, -reach / 2, 0, reach / 2, reach];
    const labels = ticks.map((level) => ({ x: scaleX(level + reach + 0.5), label: levelText(level) }));
    const all = channel.differences;
    const text = channel.identical
        ? "No sample differs."
        : `Half of the samples differ by at most ${differenceOfShare(all, 0.5)}, 99 % by at most ${differenceOfShare(all, 0.99)} levels.`;
    const { svg, foot, figure } = plotFrame(titleOf(channel), text, labels);
    const room = foot - PLOT.top;
    const most = Math.log1p(Math.max(1, ...counts));
    const heights = counts.map((count) => (room * Math.log1p(count)) / most);
    draw(svg, "path", { class: "bar", d: steps(heights, scaleX, foot) });
    draw(svg, "rect", { class: "frame", x: PLOT.left, y: PLOT.top, width: inner, height: room });
    return figure;
}

/** A round number of levels to both sides that holds every difference. */
function reachOf(channels) {
    let farthest = 0;
    for (const { differences } of channels) {
        differences.forEach((count, bin) => {
            farthest = count > 0 ? Math.max(farthest, Math.abs(bin - 255)) : farthest;
        });
    }
    return [8, 16, 32, 64, 128].find((reach) => reach >= farthest) || 255;
}

// ---- start

function listenToCopy() {
    byId("copy").addEventListener("click", async () => {
        try {
            await navigator.clipboard.writeText(data.command);
            byId("copy").textContent = "Copied";
        } catch {
            getSelection().selectAllChildren(byId("command"));
            byId("copy").textContent = "Selected";
        }
        setTimeout(() => (byId("copy").textContent = "Copy"), 2000);
    });
}

function startPage() {
    try {
        data = JSON.parse(byId("data").textContent);
    } catch {
        byId("failure").textContent = "This page holds no pictures: orv compare BEFORE AFTER -o compare.html writes one that does.";
        byId("failure").hidden = false;
        return;
    }
    look.gain = data.gain;
    byId("report").hidden = false;
    buildHeading();
    buildTable();
    buildNotes();
    const reach = reachOf(data.channels);
    byId("levels").append(...data.channels.map(levelPlot));
    byId("differences").append(...data.channels.map((channel) => differencePlot(channel, reach)));
    listenToCopy();
    startView();
}

startPage();
