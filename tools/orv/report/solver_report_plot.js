// The plot of the report: the state of the page, formats, scales and the drawing.
"use strict";
const SVG_SPACE = "http://www.w3.org/2000/svg";
const HALF_GREY = 0.5;
const QUANTITIES = {
    residual: {
        title: "True residual |b \u2212 A u|",
        short: "True residual |b \u2212 A u|",
        start: "startResidual",
    },
    differenceMax: {
        title: "Largest difference from the exact solution, grey levels",
        short: "Largest difference, grey levels",
        start: "startDifferenceMax",
    },
    differenceMean: {
        title: "Mean difference from the exact solution, grey levels",
        short: "Mean difference, grey levels",
        start: "startDifferenceMean",
    },
};
const STATES = [
    ["converged", "good", "stopped by its own test or came to rest, as exact as it can be"],
    ["limit", "fair", "used every iteration it was given, or stopped short of its tolerance"],
    ["wrong", "bad wrong", "finite, yet more than half of the error of the start is left"],
    ["broke down", "bad broken", "a sample of the result isn\u2019t finite"],
    ["skipped", "void", "not run; the note says why"],
];
// Mark shapes about the origin, one a group, so that colour isn't the only key.
const SHAPES = [
    "M-4 0A4 4 0 1 0 4 0A4 4 0 1 0-4 0z",
    "M-3.6-3.6H3.6V3.6H-3.6z",
    "M0-5L5 0L0 5L-5 0z",
    "M0-5L4.6 3.6H-4.6z",
    "M0 5L4.6-3.6H-4.6z",
    "M-4 0A4 4 0 1 0 4 0A4 4 0 1 0-4 0z",
    "M-3.6-3.6H3.6V3.6H-3.6z",
    "M0-5L5 0L0 5L-5 0z",
];
const FIRST_HOLLOW = 5;
const CROSS = "M-5-5L5 5M-5 5L5-5";

const byId = (id) => document.getElementById(id);
const isNumber = (value) => typeof value === "number" && Number.isFinite(value);
const clamp = (value, low, high) => Math.min(Math.max(value, low), high);

function assign(element, attributes) {
    for (const [name, value] of Object.entries(attributes)) {
        element.setAttribute(name, value);
    }
}

/** Makes an element; the texts of the data only ever become text nodes. */
function make(tag, attributes = {}, ...children) {
    const element = document.createElement(tag);
    assign(element, attributes);
    element.append(...children);
    return element;
}

function draw(parent, tag, attributes = {}, text = "") {
    const element = document.createElementNS(SVG_SPACE, tag);
    assign(element, attributes);
    if (text) {
        element.textContent = text;
    }
    parent.append(element);
    return element;
}

function formatNumber(value, none = "not finite") {
    if (!isNumber(value)) {
        return none;
    }
    if (value === 0) {
        return "0";
    }
    const size = Math.abs(value);
    if (size < 1e-3 || size >= 1e5) {
        return value.toExponential(1).replace("-", "\u2212").replace("+", "");
    }
    return size >= 100 ? Math.round(value).toLocaleString("en") : String(Number(value.toPrecision(3)));
}

function formatTime(seconds) {
    if (!isNumber(seconds)) {
        return "\u2013";
    }
    return seconds >= 1 ? `${Number(seconds.toPrecision(3))} s` : `${Number((seconds * 1e3).toPrecision(3))} ms`;
}

function power(exponent) {
    if (exponent >= -3 && exponent <= 4) {
        return (10 ** exponent).toLocaleString("en", { maximumFractionDigits: 3 });
    }
    const digits = "\u2070\u00b9\u00b2\u00b3\u2074\u2075\u2076\u2077\u2078\u2079";
    return (
        "10" +
        (exponent < 0 ? "\u207b" : "") +
        [...String(Math.abs(exponent))].map((digit) => digits[digit]).join("")
    );
}

let data = null;
let solvers = [];
let groups = [];
let plot = null; // scales and points of the drawing as it stands
const state = {
    quantity: "residual",
    axis: "limit",
    whole: false,
    sort: "id",
    down: false,
    hiddenGroups: new Set(),
    hiddenStates: new Set(),
    pinned: new Set(),
    over: null,
    point: -1,
};

const isShown = (solver) => !state.hiddenGroups.has(solver.groupIndex) && !state.hiddenStates.has(solver.status);
const isHot = (solver) => solver === state.over || state.pinned.has(solver);
const colour = (index) => `var(--c${index % SHAPES.length})`;
const fillOf = (index) => (index % SHAPES.length < FIRST_HOLLOW ? colour(index) : "var(--panel)");

function keyPicture(index, line) {
    const svg = document.createElementNS(SVG_SPACE, "svg");
    const [x, width] = line ? [-13, 26] : [-7, 14];
    assign(svg, { class: "key", viewBox: `${x} -7 ${width} 14`, "aria-hidden": "true" });
    if (line) {
        draw(svg, "path", { d: "M-12 0H12", style: `stroke:${colour(index)};stroke-width:2` });
    }
    draw(svg, "path", {
        d: SHAPES[index % SHAPES.length],
        style: `fill:${fillOf(index)};stroke:${colour(index)};stroke-width:1.5`,
    });
    return svg;
}

// ---- scales

/** The decimal logarithms at the plot's edges; diverging curves don't count unless asked for. */
function heightRange() {
    const system = data.system;
    const start = system[QUANTITIES[state.quantity].start];
    const values = solvers
        .flatMap((solver) => solver.curve.map((point) => point[state.quantity]))
        .filter((value) => isNumber(value) && value > 0);
    const marks = [start, referenceValue()].filter((value) => isNumber(value) && value > 0);
    const cap = isNumber(start) && start > 0 ? start * 10 : Infinity;
    const leaves = values.some((value) => value > cap);
    const kept = [...(state.whole ? values : values.filter((value) => value <= cap)), ...marks];
    const low = kept.length ? Math.min(...kept) : 0.1;
    const high = kept.length ? Math.max(...kept) : 10;
    const top = Math.log10(high) + 0.25;
    return { top, bottom: Math.log10(low) - 0.35, leaves };
}

/** What the plot's reference line stands at: each system has the tolerance, the residual is over all. */
function referenceValue() {
    return state.quantity === "residual" ? data.system.tolerance * Math.sqrt(data.system.systems) : HALF_GREY;
}

function referenceText() {
    if (state.quantity !== "residual") {
        return "half a grey level: below it nobody sees a difference";
    }
    const count = data.system.systems;
    return (
        `tolerance ${data.system.tolerance}` +
        (count > 1 ? ` of each of ${count} systems, together ${formatNumber(referenceValue())}` : "")
    );
}

function limitScale(left, right) {
    const limits = solvers.flatMap((solver) => solver.curve.map((point) => point.limit));
    const last = Math.max(1, ...limits);
    const ticks = [0];
    for (let decade = 1; decade <= last; decade *= 10) {
        ticks.push(...[1, 2, 5].map((step) => step * decade).filter((tick) => tick <= last));
    }
    const map = (limit) => left + ((right - left) * Math.log1p(limit)) / Math.log1p(last);
    if (!ticks.includes(last)) {
        ticks.push(last);
    }
    return {
        map,
        ticks: thinOut(
            ticks.map((tick) => [map(tick), String(tick)]),
            26,
        ),
    };
}

function timeScale(left, right) {
    const times = solvers
        .flatMap((solver) => solver.curve.map((point) => point.seconds))
        .filter((time) => isNumber(time) && time > 0);
    const low = Math.log10(times.length ? Math.min(...times) * 0.85 : 1e-3);
    const high = Math.log10(times.length ? Math.max(...times) * 1.1 : 1);
    const first = left + Math.min(40, (right - left) * 0.1); // what is left of it belongs to the start
    const map = (seconds) =>
        first + ((right - first) * (Math.log10(Math.max(seconds, 10 ** low)) - low)) / (high - low);
    const ticks = [[left, "start"]];
    for (let decade = Math.floor(low); decade <= high; decade++) {
        for (const step of [1, 2, 5]) {
            const at = step * 10 ** decade;
            if (Math.log10(at) >= low && Math.log10(at) <= high) {
                ticks.push([map(at), formatTime(at)]);
            }
        }
    }
    return { map, ticks: thinOut(ticks, 56) };
}

/** Drops labels that would touch; the first and the last stay. */
function thinOut(ticks, gap) {
    const kept = [];
    const last = ticks[ticks.length - 1];
    for (const tick of ticks) {
        const far = kept.length === 0 || tick[0] - kept[kept.length - 1][0] >= gap;
        if (tick === last || (far && last[0] - tick[0] >= gap)) {
            kept.push(tick);
        }
    }
    return kept;
}

// ---- the drawing

function layOut() {
    const width = Math.max(280, Math.round(byId("plot").clientWidth));
    const shown = solvers.filter((solver) => isShown(solver) && solver.curve.length);
    const margin = width >= 560 && shown.length > 0 && shown.length <= 16;
    const frame = { left: 54, top: 30, right: width - (margin ? 128 : 14), bottom: (width < 560 ? 400 : 540) - 44 };
    const range = heightRange();
    const height = (value) =>
        frame.bottom -
        ((Math.log10(Math.max(value, 10 ** range.bottom)) - range.bottom) / (range.top - range.bottom)) *
            (frame.bottom - frame.top);
    const across =
        state.axis === "limit" ? limitScale(frame.left, frame.right) : timeScale(frame.left, frame.right);
    plot = { width, height: frame.bottom + 44, frame, range, y: height, across, margin, shown };
    plot.start = data.system[QUANTITIES[state.quantity].start];
    for (const solver of solvers) {
        solver.points = pointsOf(solver);
    }
}

/** The points of a curve; y is null where the value isn't finite. */
function pointsOf(solver) {
    const points = solver.curve.map((point) => {
        const at = point[state.axis];
        const value = point[state.quantity];
        const good = isNumber(value) && isNumber(at);
        return { x: isNumber(at) ? plot.across.map(at) : null, y: good ? plot.y(value) : null, data: point };
    });
    if (state.axis === "limit" && isNumber(plot.start) && points.length) {
        points.unshift({ x: plot.across.map(0), y: plot.y(plot.start), data: null });
    }
    return points;
}

function drawFrame(svg) {
    const { frame, range, across, y } = plot;
    const step = Math.ceil((range.top - range.bottom) / 9);
    for (let exponent = Math.ceil(range.bottom / step) * step; exponent <= range.top; exponent += step) {
        const at = y(10 ** exponent);
        draw(svg, "line", { class: "grid", x1: frame.left, x2: frame.right, y1: at, y2: at });
        draw(svg, "text", { class: "tick", x: frame.left - 7, y: at + 4, "text-anchor": "end" }, power(exponent));
    }
    for (const [at, text] of across.ticks) {
        draw(svg, "line", { class: "grid", x1: at, x2: at, y1: frame.top, y2: frame.bottom });
        draw(
            svg,
            "text",
            {
                class: "tick",
                x: Math.min(at, plot.width - text.length * 3.6),
                y: frame.bottom + 17,
                "text-anchor": "middle",
            },
            text,
        );
    }
    draw(svg, "rect", {
        class: "frame",
        x: frame.left,
        y: frame.top,
        width: frame.right - frame.left,
        height: frame.bottom - frame.top,
    });
    const { title, short } = QUANTITIES[state.quantity];
    draw(svg, "text", { class: "axis", x: 4, y: 16 }, plot.width < 480 ? short : title);
    draw(
        svg,
        "text",
        { class: "axis", x: (frame.left + frame.right) / 2, y: frame.bottom + 36, "text-anchor": "middle" },
        state.axis === "limit" ? "Iteration limit" : "Time of the run",
    );
}

function drawReferences(svg) {
    const { frame, y } = plot;
    const level = y(referenceValue());
    draw(svg, "line", { class: "limitLine", x1: frame.left, x2: frame.right, y1: level, y2: level });
    if (isNumber(plot.start)) {
        draw(svg, "line", {
            class: "startLine",
            x1: frame.left,
            x2: frame.right,
            y1: y(plot.start),
            y2: y(plot.start),
        });
    }
}

function drawReferenceTexts(svg) {
    const { frame, y } = plot;
    const narrow = frame.right - frame.left < 380;
    const text = narrow && state.quantity !== "residual" ? "half a grey level" : referenceText();
    draw(
        svg,
        "text",
        { class: "lineText", x: frame.right - 8, y: y(referenceValue()) - 6, "text-anchor": "end" },
        text,
    );
    if (isNumber(plot.start)) {
        draw(svg, "circle", { class: "startDot", cx: frame.left, cy: y(plot.start), r: 3.5 });
        draw(svg, "text", { class: "lineText", x: frame.left + 10, y: y(plot.start) - 7 }, "start");
    }
}

function mark(parent, shape, x, y, index, extra = "") {
    const fill = extra === "leaves" ? colour(index) : fillOf(index);
    const style = shape === CROSS ? `stroke:${colour(index)}` : `fill:${fill};stroke:${colour(index)}`;
    draw(parent, "path", {
        class: `mark ${extra}`,
        d: shape,
        transform: `translate(${x.toFixed(1)} ${y.toFixed(1)})`,
        style,
    });
}

function drawCurve(svg, solver) {
    const { frame } = plot;
    const index = solver.groupIndex;
    const parent = draw(svg, "g", { class: isHot(solver) ? "curve hot" : "curve" });
    let path = "";
    let before = null;
    for (const point of solver.points) {
        if (point.y === null) {
            if (before) {
                mark(parent, CROSS, before.x, Math.max(before.y, frame.top + 6), index, "cross");
            }
            before = null;
            continue;
        }
        // A point between two gaps is a line of no length, which round caps show as a dot.
        path += `${before ? "L" : "M"}${point.x.toFixed(1)} ${point.y.toFixed(1)}${before ? "" : "h0"}`;
        if (before && before.y >= frame.top && point.y < frame.top) {
            const part = (before.y - frame.top) / (before.y - point.y);
            mark(parent, SHAPES[3], before.x + part * (point.x - before.x), frame.top + 5, index, "leaves");
        }
        before = point;
    }
    const line = draw(parent, "path", {
        class: "run",
        d: path,
        style: `stroke:${colour(index)}`,
        "clip-path": "url(#inside)",
    });
    parent.prepend(line);
    if (isHot(solver)) {
        for (const point of solver.points) {
            if (point.y !== null && point.y >= frame.top && point.data) {
                mark(parent, SHAPES[index % SHAPES.length], point.x, point.y, index);
            }
        }
    } else if (before && before.y >= frame.top) {
        mark(parent, SHAPES[index % SHAPES.length], before.x, before.y, index);
    }
}

/** Names at the ends of the curves: of the pinned ones, and of all when there is room. */
function drawNames(svg) {
    const { frame, margin, shown } = plot;
    const named = solvers.filter(
        (solver) => isHot(solver) || (margin && shown.includes(solver) && !solvers.some(isHot)),
    );
    const labels = [];
    for (const solver of named) {
        const end = solver.points.filter((point) => point.y !== null).pop();
        if (!end) {
            continue;
        }
        const width = solver.name.length * 7 + 4;
        const y = clamp(end.y, frame.top + 8, frame.bottom - 6);
        const gap = margin && end.x > frame.right - 20 ? 24 : 10;
        const inside = end.x + gap + width > plot.width;
        labels.push({
            solver,
            end: { x: end.x, y },
            width,
            x: inside ? plot.width - width - 6 : end.x + gap,
            y: inside ? y - 14 : y,
        });
    }
    spread(labels.sort((a, b) => a.y - b.y));
    for (const { solver, end, x, y } of labels) {
        if (Math.abs(y - end.y) > 4 && x > end.x + 12) {
            draw(svg, "line", { class: "leader", x1: end.x + 6, y1: end.y, x2: x - 3, y2: y });
        }
        draw(svg, "text", { class: "name", x, y: y + 4 }, solver.name);
    }
}

/** Pushes labels that touch apart, each by half, until none does; they stay in their order. */
function spread(labels) {
    const pitch = 14;
    for (let round = 0; round < 200; round++) {
        let moved = false;
        labels.forEach((low, index) => {
            for (const high of labels.slice(0, index)) {
                const missing = pitch - (low.y - high.y);
                if (missing < 0.1 || low.x >= high.x + high.width || high.x >= low.x + low.width) {
                    continue;
                }
                high.y = Math.max(high.y - missing / 2, plot.frame.top + 4);
                low.y = Math.min(low.y + missing / 2, plot.frame.bottom + 4);
                moved = true;
            }
        });
        if (!moved) {
            return;
        }
    }
}

/** Draws the whole plot anew; some hundred elements, so nothing is kept. */
function redraw() {
    if (!plot) {
        layOut();
    }
    const svg = byId("chart");
    svg.replaceChildren();
    svg.setAttribute("viewBox", `0 0 ${plot.width} ${plot.height}`);
    const { frame } = plot;
    const clip = draw(draw(svg, "defs"), "clipPath", { id: "inside" });
    draw(clip, "rect", {
        x: frame.left,
        y: frame.top,
        width: frame.right - frame.left + 3,
        height: frame.bottom - frame.top + 3,
    });
    drawFrame(svg);
    drawReferences(svg);
    const visible = solvers.filter((solver) => solver.curve.length && (isShown(solver) || isHot(solver)));
    const all = draw(svg, "g", { class: visible.some(isHot) ? "some" : "" });
    visible.sort((a, b) => isHot(a) - isHot(b));
    for (const solver of visible) {
        drawCurve(all, solver);
    }
    drawReferenceTexts(svg);
    drawNames(svg);
    const here = state.over && state.over.points[state.point];
    if (here && here.y !== null && here.y >= frame.top) {
        draw(svg, "circle", { class: "here", cx: here.x, cy: here.y, r: 8 });
    }
    for (const solver of solvers) {
        solver.row.classList.toggle("hot", isHot(solver));
    }
    byId("unpin").disabled = state.pinned.size === 0;
    byId("wholeLabel").hidden = !plot.range.leaves;
}

function relayOut() {
    plot = null;
    redraw();
    const count = plot.shown.length;
    byId("chartText").textContent =
        `${QUANTITIES[state.quantity].title} over ${state.axis === "limit" ? "iteration limit" : "time"}, ${count} of ${solvers.length} curves shown. The table below has the numbers.`;
}
