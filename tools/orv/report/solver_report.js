// The rest of the report: pointing and keys, legend, table, heading, saving.
"use strict";

// ---- pointing, pinning and keys

function nearest(x, y, reach) {
    let best = { distance: reach, solver: null, point: -1 };
    for (const solver of plot.shown) {
        solver.points.forEach((point, index) => {
            if (point.y === null) {
                return;
            }
            const next = solver.points[index + 1];
            const end = next && next.y !== null ? next : point;
            const [dx, dy] = [end.x - point.x, end.y - point.y];
            const part = clamp(((x - point.x) * dx + (y - point.y) * dy) / (dx * dx + dy * dy || 1), 0, 1);
            const distance = Math.hypot(x - point.x - part * dx, y - point.y - part * dy);
            if (distance < best.distance) {
                best = { distance, solver, point: part > 0.5 ? index + 1 : index };
            }
        });
    }
    return best;
}

function setOver(solver, point = -1) {
    if (solver === state.over && point === state.point) {
        return;
    }
    state.over = solver;
    state.point = point;
    redraw();
    showTip();
}

function tipLines(solver, point) {
    const shown = point || {
        residual: data.system.startResidual,
        differenceMax: data.system.startDifferenceMax,
        differenceMean: data.system.startDifferenceMean,
    };
    return [
        ["Iteration limit", point ? String(point.limit) : "0, the start"],
        ["Time", point ? formatTime(point.seconds) : "\u2013"],
        ["Residual", formatNumber(shown.residual)],
        ["Largest difference", formatNumber(shown.differenceMax)],
        ["Mean difference", formatNumber(shown.differenceMean)],
        ["Status", solver.status],
    ];
}

function showTip() {
    const tip = byId("tip");
    const at = state.over && state.over.points[state.point];
    tip.hidden = !at;
    if (!at) {
        return;
    }
    const list = make("dl");
    for (const [name, value] of tipLines(state.over, at.data)) {
        list.append(make("dt", {}, name), make("dd", {}, value));
    }
    tip.replaceChildren(make("b", {}, state.over.name), make("span", { class: "group" }, state.over.group), list);
    const scale = byId("chart").clientWidth / plot.width;
    const x = (at.x === null ? plot.frame.left : at.x) * scale;
    const y = clamp(at.y === null ? plot.frame.top : at.y, plot.frame.top, plot.frame.bottom) * scale;
    const room = byId("plot").clientWidth - tip.offsetWidth;
    tip.style.left = `${clamp(x + 16 <= room ? x + 16 : x - tip.offsetWidth - 16, 0, Math.max(0, room))}px`;
    tip.style.top = `${y - tip.offsetHeight - 12 >= 0 ? y - tip.offsetHeight - 12 : y + 16}px`;
}

function togglePin(solver) {
    if (!state.pinned.delete(solver)) {
        state.pinned.add(solver);
    }
    solver.pin.setAttribute("aria-pressed", String(state.pinned.has(solver)));
    redraw();
}

function listenToPointer() {
    const chart = byId("chart");
    const find = (event) => {
        const box = chart.getBoundingClientRect();
        const scale = plot.width / box.width;
        return nearest(
            (event.clientX - box.left) * scale,
            (event.clientY - box.top) * scale,
            event.pointerType === "touch" ? 30 : 16,
        );
    };
    chart.addEventListener("pointermove", (event) => {
        const found = find(event);
        setOver(found.solver, found.point);
    });
    chart.addEventListener("pointerleave", () => setOver(null));
    chart.addEventListener("click", (event) => {
        const found = find(event);
        setOver(found.solver, found.point);
        if (found.solver) {
            togglePin(found.solver);
        }
    });
    chart.addEventListener("blur", () => setOver(null));
}

/** Up and down change the solver, left and right the point; each step is spoken. */
function listenToKeys() {
    byId("chart").addEventListener("keydown", (event) => {
        const list = plot.shown;
        if (!list.length || event.altKey || event.ctrlKey || event.metaKey) {
            return;
        }
        const solver = list.includes(state.over) ? state.over : null;
        const place = list.indexOf(solver);
        const last = (one) => one.points.length - 1;
        const turn = (step) => list[(place + step + list.length) % list.length];
        const now = solver || list[0];
        const point = state.point < 0 ? last(now) : state.point;
        const moves = {
            ArrowDown: () => (solver ? [turn(1), Math.min(point, last(turn(1)))] : [now, last(now)]),
            ArrowUp: () =>
                solver
                    ? [turn(-1), Math.min(point, last(turn(-1)))]
                    : [list[list.length - 1], last(list[list.length - 1])],
            ArrowRight: () => [now, solver ? Math.min(point + 1, last(now)) : point],
            ArrowLeft: () => [now, solver ? Math.max(point - 1, 0) : point],
            Home: () => [now, 0],
            End: () => [now, last(now)],
            Escape: () => [null, -1],
        };
        if (event.key in moves) {
            setOver(...moves[event.key]());
        } else if ((event.key === "Enter" || event.key === " ") && solver) {
            togglePin(solver);
        } else {
            return;
        }
        event.preventDefault();
        speak();
    });
}

function speak() {
    const at = state.over && state.over.points[state.point];
    const pinned = at && state.pinned.has(state.over) ? ", pinned" : "";
    byId("spoken").textContent = at
        ? `${state.over.name}${pinned}: ` +
          tipLines(state.over, at.data)
              .map((line) => line.join(" "))
              .join(", ")
        : "";
}

// ---- controls and legend

function legendEntry(name, count, hidden, value, picture) {
    const box = make("input", { type: "checkbox" });
    box.checked = true;
    const label = make(
        "label",
        {},
        box,
        ...(picture ? [picture] : []),
        make("span", {}, `${name}\u00a0`, make("small", {}, `(${count})`)),
    );
    const entry = make("div", { class: "entry" }, label);
    box.addEventListener("change", () => {
        if (box.checked) {
            hidden.delete(value);
        } else {
            hidden.add(value);
        }
        entry.classList.toggle("off", !box.checked);
        relayOut();
    });
    return { entry, box };
}

function buildLegend() {
    const boxes = groups.map((name, index) => {
        const count = solvers.filter((solver) => solver.groupIndex === index).length;
        const { entry, box } = legendEntry(name, count, state.hiddenGroups, index, keyPicture(index, true));
        const only = make("button", { type: "button", "aria-label": `Only ${name}` }, "Only");
        only.addEventListener("click", () => setGroups((other) => other === index));
        entry.append(only);
        byId("groups").append(entry);
        return box;
    });
    const setGroups = (wanted) => {
        boxes.forEach((box, index) => {
            box.checked = wanted(index);
            box.closest(".entry").classList.toggle("off", !box.checked);
            if (box.checked) {
                state.hiddenGroups.delete(index);
            } else {
                state.hiddenGroups.add(index);
            }
        });
        relayOut();
    };
    byId("showAll").addEventListener("click", () => setGroups(() => true));
    byId("showNone").addEventListener("click", () => setGroups(() => false));
    byId("unpin").addEventListener("click", () => [...state.pinned].forEach(togglePin));
    for (const [name, look] of STATES) {
        const count = solvers.filter((solver) => solver.status === name).length;
        if (count === 0) {
            continue;
        }
        const { entry, box } = legendEntry("", count, state.hiddenStates, name, null);
        box.nextSibling.prepend(make("span", { class: `status ${look}` }, name));
        byId("statuses").append(entry);
    }
}

function listenToControls() {
    for (const [name, key] of [
        ["quantity", "quantity"],
        ["axis", "axis"],
    ]) {
        for (const input of document.querySelectorAll(`input[name="${name}"]`)) {
            if (input.checked) {
                state[key] = input.value;
            } // a reload keeps the choice
            input.addEventListener("change", () => {
                state[key] = input.value;
                relayOut();
            });
        }
    }
    state.whole = byId("whole").checked;
    byId("whole").addEventListener("change", () => {
        state.whole = byId("whole").checked;
        relayOut();
    });
    byId("saveSvg").addEventListener("click", saveSvg);
    byId("saveCsv").addEventListener("click", saveCsv);
    byId("copy").addEventListener("click", copyCommand);
}

async function copyCommand() {
    const button = byId("copy");
    try {
        await navigator.clipboard.writeText(data.command);
        button.textContent = "Copied";
    } catch {
        getSelection().selectAllChildren(byId("command"));
        button.textContent = "Selected";
    }
    setTimeout(() => {
        button.textContent = "Copy";
    }, 2000);
}

// ---- table

const COLUMNS = [
    { key: "id", title: "Id", number: true, value: (solver) => solver.id },
    { key: "name", title: "Solver", value: (solver) => solver.name },
    { key: "group", title: "Group", value: (solver) => solver.groupIndex },
    { key: "status", title: "Status", value: (solver) => STATES.findIndex(([name]) => name === solver.status) },
    { key: "iterations", title: "Iterations", number: true, value: (solver) => solver.iterations },
    { key: "residual", title: "Residual", number: true, value: (solver) => solver.residual },
    { key: "differenceMax", title: "Largest\ndiff.", number: true, value: (solver) => solver.differenceMax },
    { key: "differenceMean", title: "Mean\ndiff.", number: true, value: (solver) => solver.differenceMean },
    { key: "seconds", title: "Time,\nms", number: true, value: (solver) => solver.seconds },
    { key: "note", title: "Note", value: (solver) => noteOf(solver) },
];

const noteOf = (solver) => [solver.reason, solver.note].filter(Boolean).join("; ");

function compare(a, b) {
    if (typeof a === "string") {
        return a.localeCompare(b, "en", { numeric: true });
    }
    return a - b;
}

/** Sorts the rows; what has no value stays at the end in both directions. */
function sortRows() {
    const column = COLUMNS.find(({ key }) => key === state.sort);
    const hasValue = (value) => (typeof value === "string" ? value !== "" : isNumber(value));
    const sorted = [...solvers].sort((a, b) => {
        const [left, right] = [column.value(a), column.value(b)];
        if (!hasValue(left) || !hasValue(right)) {
            return hasValue(right) - hasValue(left) || a.id - b.id;
        }
        return (state.down ? -1 : 1) * compare(left, right) || a.id - b.id;
    });
    byId("rows").append(...sorted.map((solver) => solver.row));
    for (const head of byId("heads").children) {
        const active = head.dataset.key === state.sort;
        if (active) {
            head.setAttribute("aria-sort", state.down ? "descending" : "ascending");
        } else {
            head.removeAttribute("aria-sort");
        }
    }
}

function buildHead() {
    for (const { key, title, number } of COLUMNS) {
        const button = make("button", { type: "button" }, title);
        const side = `${number ? "number" : ""} ${key === "name" ? "named" : ""}`;
        byId("heads").append(make("th", { scope: "col", "data-key": key, class: side }, button));
        button.addEventListener("click", () => {
            state.down = state.sort === key && !state.down;
            state.sort = key;
            sortRows();
        });
    }
}

function buildRow(solver) {
    const run = solver.curve.length > 0;
    const none = run ? "not finite" : "\u2013";
    const number = (text) => make("td", { class: /\d/.test(text) ? "number" : "number void" }, text);
    const time = isNumber(solver.seconds) ? String(Number((solver.seconds * 1e3).toPrecision(3))) : "\u2013";
    const look = (STATES.find(([name]) => name === solver.status) || ["", "void"])[1];
    solver.pin = make(
        "button",
        { type: "button", "aria-pressed": "false", title: "Pin the curve" },
        keyPicture(solver.groupIndex, false),
        solver.name,
    );
    if (!run) {
        solver.pin.disabled = true;
    }
    const note = make("td", { class: "noteCell" }, noteOf(solver), make("span", {}, solver.description));
    solver.row = make(
        "tr",
        {},
        number(String(solver.id)),
        make("th", { scope: "row", class: "named" }, solver.pin),
        make("td", { class: "groupCell" }, solver.group),
        make("td", {}, make("span", { class: `status ${look}` }, solver.status)),
        number(formatNumber(solver.iterations, "\u2013")),
        number(formatNumber(solver.residual, none)),
        number(formatNumber(solver.differenceMax, none)),
        number(formatNumber(solver.differenceMean, none)),
        number(time),
        note,
    );
    // The row takes the button's clicks as well; a click that ends a selection of text is none.
    solver.row.addEventListener("click", () => {
        if (run && getSelection().isCollapsed) {
            togglePin(solver);
        }
    });
    solver.pin.addEventListener("focus", () => setOver(solver));
    solver.pin.addEventListener("blur", () => setOver(null));
    solver.row.classList.toggle("run", run);
    solver.row.addEventListener("pointerenter", () => setOver(solver));
    solver.row.addEventListener("pointerleave", () => setOver(null));
}

// ---- heading

function tile(name, value, small = "") {
    byId("tiles").append(
        make("li", {}, make("span", {}, name), make("strong", {}, value), make("span", {}, small)),
    );
}

function buildTiles() {
    const count = (...names) => solvers.filter((solver) => names.includes(solver.status)).length;
    const run = solvers.filter((solver) => solver.curve.length);
    const below = run.filter((solver) => isNumber(solver.differenceMax) && solver.differenceMax < HALF_GREY);
    const firsts = run.flatMap((solver) =>
        solver.curve
            .filter(
                (point) =>
                    isNumber(point.differenceMax) && point.differenceMax < HALF_GREY && isNumber(point.seconds),
            )
            .slice(0, 1)
            .map((point) => ({ solver, point })),
    );
    firsts.sort((a, b) => a.point.seconds - b.point.seconds);
    tile("Converged", `${count("converged")} of ${solvers.length}`, `${count("limit")} used all iterations`);
    tile("Within half a grey level", `${below.length} of ${solvers.length}`, "everywhere in the picture");
    if (firsts.length) {
        const { solver, point } = firsts[0];
        tile(
            "Fastest within half a grey level",
            solver.name,
            `${formatTime(point.seconds)}, iteration limit ${point.limit}`,
        );
    } else {
        tile("Fastest within half a grey level", "none", "");
    }
    tile(
        "Broke down or wrong",
        String(count("broke down", "wrong")),
        count("skipped") ? `${count("skipped")} skipped` : "none skipped",
    );
}

function buildHeading() {
    const { picture, system } = data;
    const whole = picture.usedWidth === picture.width && picture.usedHeight === picture.height;
    document.title = `Linear solvers on ${picture.name}`;
    byId("program").textContent = data.program;
    byId("picture").textContent = picture.name;
    byId("subject").textContent =
        `${solvers.length} solvers, scheme ${system.scheme}, ` +
        (whole
            ? `the whole picture of ${picture.width} \u00d7 ${picture.height} pixels`
            : `${picture.usedWidth} \u00d7 ${picture.usedHeight} pixels at (${picture.x}, ${picture.y}) of ${picture.width} \u00d7 ${picture.height}`);
    byId("command").textContent = data.command;
    for (const [name, look, meaning] of STATES) {
        byId("states").append(
            make("div", {}, make("dt", { class: `status ${look}` }, name), make("dd", {}, meaning)),
        );
    }
    const each = ((picture.usedWidth * picture.usedHeight) / system.systems).toLocaleString("en");
    const entries = [
        ["Scheme", system.scheme],
        ["Time step tau", String(system.tau)],
        ["Contrast", String(system.contrast)],
        ["Sigma", String(system.sigma)],
        ["Flow", system.flow],
        ["Gradient norm", String(system.norm)],
        [
            "Systems",
            system.systems === 1
                ? `1 of ${each} unknowns`
                : `${system.systems} of ${each} unknowns, one for each row`,
        ],
        ["Tolerance of each", String(system.tolerance)],
        ["Largest iteration limit", String(system.solverIterations)],
        ["Residual of the start", formatNumber(system.startResidual)],
        [
            "Difference of the start, grey levels",
            `${formatNumber(system.startDifferenceMax)} largest, ${formatNumber(system.startDifferenceMean)} mean`,
        ],
        ["Residual of the exact solution", formatNumber(system.exactResidual)],
    ];
    for (const [name, value] of entries) {
        byId("system").append(make("div", {}, make("dt", {}, name), make("dd", {}, value)));
    }
}

// ---- saving

// What the style sheet says about the drawing, and a file has to say itself.
const DRAWN = [
    ...["fill", "stroke", "stroke-width", "stroke-dasharray", "stroke-linecap", "stroke-linejoin", "paint-order"],
    ...["opacity", "font-size", "font-weight"],
];

function save(text, type, ending) {
    const base = data.picture.name.replace(/\.[^.]*$/, "").replace(/[^\w.-]+/g, "_") || "picture";
    const address = URL.createObjectURL(new Blob([text], { type }));
    make("a", { href: address, download: `${base}-solvers.${ending}` }).click();
    setTimeout(() => URL.revokeObjectURL(address), 1000);
}

function saveCsv() {
    const field = (value) => {
        const text = value === null || value === undefined ? "" : String(value);
        return /[",\n\r]/.test(text) ? `"${text.replaceAll('"', '""')}"` : text;
    };
    const lines = ["id,name,limit,status,seconds,residual,difference_max,difference_mean"];
    for (const solver of solvers) {
        for (const point of solver.curve) {
            lines.push(
                [
                    solver.id,
                    solver.name,
                    point.limit,
                    solver.status,
                    point.seconds,
                    point.residual,
                    point.differenceMax,
                    point.differenceMean,
                ]
                    .map(field)
                    .join(","),
            );
        }
    }
    save(lines.join("\n") + "\n", "text/csv", "csv");
}

/** Writes the groups shown under a copy of the drawing; gives the height that it now has. */
function addLegend(copy, resolve) {
    const shown = (index) => plot.shown.some((solver) => solver.groupIndex === index);
    const visible = groups.map((name, index) => ({ name, index })).filter(({ index }) => shown(index));
    const columns = plot.width >= 560 ? 2 : 1;
    visible.forEach(({ name, index }, place) => {
        const x = 16 + (place % columns) * (plot.width / columns);
        const entry = draw(copy, "g", {
            transform: `translate(${x} ${plot.height + 16 + 20 * Math.floor(place / columns)})`,
            stroke: resolve(colour(index)),
        });
        draw(entry, "path", { d: "M-12 0H12", "stroke-width": 2 });
        draw(entry, "path", { d: SHAPES[index % SHAPES.length], fill: resolve(fillOf(index)) });
        draw(entry, "text", { x: 20, y: 4, "font-size": 12, fill: resolve("var(--ink)"), stroke: "none" }, name);
    });
    return plot.height + 34 + 20 * Math.ceil(visible.length / columns);
}

/** Saves the drawing as it stands, its colours written out, with a legend and the command. */
function saveSvg() {
    const chart = byId("chart");
    const copy = chart.cloneNode(true);
    const originals = [...chart.querySelectorAll("*")];
    [...copy.querySelectorAll("*")].forEach((element, index) => {
        const style = getComputedStyle(originals[index]);
        element.removeAttribute("style");
        assign(element, Object.fromEntries(DRAWN.map((name) => [name, style.getPropertyValue(name)])));
    });
    const page = getComputedStyle(document.documentElement);
    const resolve = (value) => value.replace(/var\((--\w+)\)/, (_, name) => page.getPropertyValue(name).trim());
    const height = addLegend(copy, resolve);
    const line = `${data.program}: ${data.command}`;
    draw(copy, "text", { x: 4, y: height - 8, "font-size": 12, fill: resolve("var(--soft)") }, line);
    const sheet = draw(copy, "rect", { width: plot.width, height, fill: resolve("var(--panel)") });
    copy.prepend(sheet);
    ["tabindex", "role", "id", "aria-labelledby", "aria-describedby"].forEach((name) => copy.removeAttribute(name));
    assign(copy, {
        width: plot.width,
        height,
        viewBox: `0 0 ${plot.width} ${height}`,
        "font-family": "sans-serif",
    });
    save(new XMLSerializer().serializeToString(copy), "image/svg+xml", "svg");
}

// ---- start

function start() {
    try {
        data = JSON.parse(byId("data").textContent);
        solvers = data.solvers;
    } catch {
        byId("failure").textContent =
            "This page holds no results: orv solve IN -o report.html writes one that does.";
        byId("failure").hidden = false;
        byId("repeat").hidden = true;
        return;
    }
    groups = [...new Set(solvers.map((solver) => solver.group))];
    for (const solver of solvers) {
        solver.groupIndex = groups.indexOf(solver.group);
    }
    byId("report").hidden = false;
    buildHeading();
    buildTiles();
    buildHead();
    solvers.forEach(buildRow);
    sortRows();
    buildLegend();
    listenToControls();
    listenToPointer();
    listenToKeys();
    addEventListener("beforeprint", () => {
        byId("guide").open = true;
    });
    relayOut();
    new ResizeObserver(() => {
        if (plot.width !== Math.max(280, Math.round(byId("plot").clientWidth))) {
            relayOut();
        }
    }).observe(byId("plot"));
}

start();
