// Draws the figures of a report page with Observable Plot, from the data in the element "fit-data"; page_data.h
// says what they are. Colours are variables of the style sheet, so that dark mode and print need no second drawing.
"use strict";
(() => {
  const data = JSON.parse(document.getElementById("fit-data").textContent);
  const {points, ranges, quantiles, histogram, coefficients} = data;
  const rows = d3.range(points.label.length);
  const indexOf = new Map(points.number.map((number, i) => [number, i]));
  const standardised = points.residual.map((r) => r / data.sigma);
  const scale = standardised.map((s) => Math.sqrt(Math.abs(s)));
  const figures = [];  // {svg, place, brushed}: place gives an observation's position in pixels
  let marked = new Set();

  const margins = {marginLeft: 62, marginRight: 14, marginTop: 30, marginBottom: 42};
  const frame = {
    ...margins,
    width: data.grid.width + margins.marginLeft + margins.marginRight,
    height: data.grid.height + margins.marginTop + margins.marginBottom,
    className: "plot",
  };
  const short = (text, length) => (text.length > length ? text.slice(0, length - 1) + "…" : text);
  // Powers of ten where the digits would not fit an axis.
  const isFar = (value) => Math.abs(value) >= 1e9 || (value !== 0 && Math.abs(value) < 1e-4);
  const format = (value) =>
    isFar(value) ? d3.format(".5~g")(value) : value.toLocaleString("en", {maximumSignificantDigits: 5});
  const describe = (i) =>
    [
      short(points.label[i], 60),
      `observation ${points.number[i].toLocaleString("en")}`,
      `fitted ${format(points.fitted[i])}`,
      `residual ${format(points.residual[i])}`,
      ...(data.sigma ? [`standardised ${standardised[i].toFixed(2)}`] : []),
    ].join("\n");
  const tip = (items, options) => Plot.tip(items, Plot.pointer({fontSize: 13, lineHeight: 1.25, ...options}));
  const radius = rows.length > 2000 ? 1.8 : rows.length > 200 ? 3 : 4;
  const reference = {stroke: "var(--reference)", strokeDasharray: "4 3"};
  const smoothed = (curve) =>
    Plot.line(curve.x, {
      x: curve.x, y: curve.y, stroke: "var(--smooth)", strokeWidth: 2.5, className: "smooth", clip: true,
    });

  // Puts a drawing into its figure in place of the note, and names it for who can't see it.
  function show(id, options, place, brushed) {
    const figure = document.getElementById(id);
    const ariaLabel = figure.querySelector("h3").textContent;
    const draw = () => Plot.plot({...frame, ...options, ariaLabel});
    let svg = draw();
    const far = ["x", "y"].filter((axis) => {
      const {domain, type} = svg.scale(axis);
      return type === "linear" && isFar(Math.max(...domain.map(Math.abs)) / 10);
    });
    if (far.length > 0) {
      for (const axis of far) options[axis] = {...options[axis], tickFormat: ".4~g"};
      svg = draw();
    }
    svg.querySelector("style").remove();  // the page's style sheet has its rules; the policy refuses others
    svg.setAttribute("role", "img");
    svg.setAttribute("aria-describedby", `${id}-numbers`);
    figure.querySelector(".drawing").replaceChildren(svg);
    if (!place) return;
    const layer = d3.select(svg).append("g").attr("class", "marked");
    const entry = {place: (i) => place(i, svg), brushed, layer};
    figures.push(entry);
    addBrush(svg, entry);
  }

  const position = (svg, x, y) => [svg.scale("x").apply(x), svg.scale("y").apply(y)];

  // Dragging marks what lies in the rectangle; a click marks the nearest observation, or none.
  function addBrush(svg, entry) {
    const {marginLeft, marginTop, marginRight, marginBottom, width, height} = frame;
    const brush = d3.brush()
      .extent([[marginLeft, marginTop], [width - marginRight, height - marginBottom]])
      .on("end", (event) => {
        if (!event.sourceEvent) return;
        const add = event.sourceEvent.shiftKey || event.sourceEvent.ctrlKey || event.sourceEvent.metaKey;
        if (event.selection) {
          const [[x0, y0], [x1, y1]] = event.selection;
          const inside = (i) => {
            const [x, y] = entry.place(i);
            return x >= x0 && x <= x1 && (entry.brushed === "x" || (y >= y0 && y <= y1));
          };
          mark(rows.filter(inside), add);
          layer.call(brush.move, null);
        } else {
          const [x, y] = d3.pointer(event.sourceEvent, svg);
          const distance = (i) => Math.hypot(entry.place(i)[0] - x, entry.place(i)[1] - y);
          const nearest = d3.least(rows, distance);
          mark(nearest !== undefined && distance(nearest) < 12 ? [nearest] : [], add);
        }
      });
    const layer = d3.select(svg).append("g").attr("class", "brush").call(brush);
    // A tip follows the pointer and is not to stay where it was pressed.
    layer.on("pointerdown", (event) => event.stopPropagation());
  }

  function mark(indices, add) {
    if (!add) marked = new Set(indices);
    else for (const i of indices) if (!marked.delete(i)) marked.add(i);
    for (const {layer, place} of figures) {
      layer.selectAll("circle").data([...marked]).join("circle")
        .attr("r", 6)
        .attr("cx", (i) => place(i)[0])
        .attr("cy", (i) => place(i)[1]);
    }
    for (const link of document.querySelectorAll("[data-number]")) {
      link.closest("tr").classList.toggle("marked", marked.has(indexOf.get(Number(link.dataset.number))));
    }
    const names = [...marked].slice(0, 5).map((i) => short(points.label[i], 40));
    document.getElementById("marked").textContent = marked.size === 0 ? "" :
      `Marked: ${names.join("; ")}${marked.size > 5 ? ` and ${(marked.size - 5).toLocaleString("en")} more` : ""}.`;
  }

  // Hexagons with their counts below the points, when the points are not all observations.
  function cloud(hexagons, y) {
    const dots = {x: points.fitted, y, r: radius, className: "points"};
    const drawn = [Plot.dot(rows, {...dots, fill: "var(--point)", fillOpacity: data.all ? 0.75 : 1})];
    if (data.all) return drawn;
    const cells = d3.range(hexagons.count.length);
    const title = cells.map((k) => `${hexagons.count[k].toLocaleString("en")} observations`);
    const at = {x: hexagons.x, y: hexagons.y};
    return [
      Plot.dot(cells, {
        ...at, symbol: "hexagon", r: data.grid.step / 2, fill: "var(--point)", fillOpacity: hexagons.count,
        className: "hexagons",
      }),
      Plot.dot(rows, {...dots, r: 1.6, fill: "var(--outlier)"}),
      tip(cells, {...at, title, maxRadius: data.grid.step / 2}),
    ];
  }
  const opacity = {opacity: {type: "log", range: [0.15, 1]}};

  function intervals() {
    // The widest table that stays readable; the largest t values when there are more.
    const all = d3.range(coefficients.t.length).filter((j) => Number.isFinite(coefficients.low[j]));
    const size = (j) => -Math.abs(coefficients.t[j]);
    const kept = new Set(d3.sort(all, size).slice(0, 40));
    const shown = all.filter((j) => kept.has(j));
    const clear = (j) => coefficients.low[j] > 0 || coefficients.high[j] < 0;
    const names = new Map(shown.map((j) => [j, short(coefficients.name[j], 24)]));
    const longest = d3.max(names.values(), (name) => name.length) ?? 0;
    const of = (list) => (j) => list[j];
    const text = (j) => `${short(coefficients.name[j], 60)}\nt value ${format(coefficients.t[j])}\n` +
      `95 % from ${format(coefficients.low[j])} to ${format(coefficients.high[j])}`;
    show("intervals", {
      marginLeft: 24 + 7.2 * longest,
      height: Math.max(frame.height, 80 + 22 * shown.length),
      x: {label: "Estimate / standard error", grid: true, nice: true},
      y: {type: "point", domain: shown, tickFormat: (j) => names.get(j), label: null, tickSize: 0},
      marks: [
        Plot.ruleX([0], {stroke: "var(--reference)"}),
        Plot.ruleY(shown, {
          x1: of(coefficients.low), x2: of(coefficients.high), y: (j) => j, stroke: "var(--point)", strokeWidth: 2,
        }),
        Plot.dot(shown, {
          x: of(coefficients.t), y: (j) => j, r: 4.5, stroke: "var(--point)", strokeWidth: 2, className: "points",
          fill: (j) => (clear(j) ? "var(--point)" : "var(--paper)"),
        }),
        tip(shown, {x: of(coefficients.t), y: (j) => j, title: text}),
      ],
    });
    if (shown.length < coefficients.t.length) {
      const note = document.createElement("p");
      note.textContent = `Drawn are ${shown.length} of ${coefficients.t.length} coefficients: those with the largest ` +
        "t values among those that have an interval.";
      document.querySelector("#intervals figcaption").prepend(note);
    }
  }

  function residuals() {
    show("residuals", {
      ...opacity,
      x: {label: "Fitted value", domain: ranges.fitted},
      y: {label: "Residual", domain: ranges.residual, grid: true},
      marks: [
        Plot.ruleY([0], reference),
        ...cloud(data.hexagons.residual, points.residual),
        smoothed(data.smooth.residual),
        tip(rows, {x: points.fitted, y: points.residual, title: describe, maxRadius: 12}),
      ],
    }, (i, svg) => position(svg, points.fitted[i], points.residual[i]));
  }

  function normalQuantiles() {
    const ranks = d3.range(quantiles.normal.length);
    const {normal, observed, low, high} = quantiles;
    const text = (k) => (quantiles.point[k] >= 0 ? describe(quantiles.point[k]) :
      `normal ${normal[k].toFixed(3)}\nobserved ${observed[k].toFixed(3)}`);
    const ends = [normal[0], normal[normal.length - 1]];
    show("quantiles", {
      x: {label: "Quantile of the normal distribution", nice: true},
      y: {label: "Standardised residual", grid: true, nice: true},
      marks: [
        Plot.areaY(ranks, {x: normal, y1: low, y2: high, fill: "var(--band)", className: "band"}),
        Plot.line(ends, {x: ends, y: ends, ...reference}),
        Plot.dot(ranks, {x: normal, y: observed, r: Math.min(radius, 3.2), fill: "var(--point)", className: "points"}),
        tip(ranks, {x: normal, y: observed, title: text, maxRadius: 12}),
      ],
    }, (i, svg) => position(svg, points.normal[i], standardised[i]));
  }

  function scaleLocation() {
    show("scale", {
      ...opacity,
      x: {label: "Fitted value", domain: ranges.fitted},
      y: {label: "√|standardised residual|", domain: ranges.scale, grid: true},
      marks: [
        ...cloud(data.hexagons.scale, scale),
        smoothed(data.smooth.scale),
        tip(rows, {x: points.fitted, y: scale, title: describe, maxRadius: 12}),
      ],
    }, (i, svg) => position(svg, points.fitted[i], scale[i]));
  }

  function residualHistogram() {
    const {start, step, count} = histogram;
    const bins = d3.range(count.length);
    const from = (k) => start + k * step;
    const to = (k) => start + (k + 1) * step;
    const text = (k) => `${count[k].toLocaleString("en")} observations\nfrom ${format(from(k))} to ${format(to(k))}`;
    const reach = [Math.min(from(0), -3.5 * (data.sigma ?? 0)), Math.max(to(count.length - 1), 3.5 * (data.sigma ?? 0))];
    const grid = data.sigma ? d3.ticks(reach[0], reach[1], 400) : [];
    const density = (r) =>
      (d3.sum(count) * step * Math.exp(-0.5 * (r / data.sigma) ** 2)) / (data.sigma * Math.sqrt(2 * Math.PI));
    show("histogram", {
      x: {label: "Residual", domain: reach},
      y: {label: "Observations", grid: true, nice: true, tickFormat: (v) => (v % 1 ? "" : v.toLocaleString("en"))},
      marks: [
        Plot.rectY(bins, {x1: from, x2: to, y: count, fill: "var(--point)", inset: 0.5, className: "points"}),
        Plot.line(grid, {x: grid, y: density, stroke: "var(--smooth)", strokeWidth: 2.5}),
        Plot.ruleY([0]),
        tip(bins, Plot.pointerX({x: (k) => (from(k) + to(k)) / 2, y: count, title: text})),
      ],
    }, (i, svg) => position(svg, points.residual[i], 0), "x");
  }

  // One figure a frame, so that the first is there at once.
  const drawings = {intervals, residuals, quantiles: normalQuantiles, scale: scaleLocation, histogram: residualHistogram};
  const waiting = Object.keys(drawings).filter((id) => document.getElementById(id));
  function drawNext() {
    const id = waiting.shift();
    if (!id) return document.documentElement.classList.add("drawn");
    drawings[id]();
    requestAnimationFrame(() => setTimeout(drawNext));
  }
  document.documentElement.classList.add("script");
  addEventListener("keydown", (event) => event.key === "Escape" && mark([]));
  for (const link of document.querySelectorAll("[data-number]")) {
    link.addEventListener("click", (event) => {
      event.preventDefault();
      mark([indexOf.get(Number(link.dataset.number))], event.shiftKey || event.ctrlKey || event.metaKey);
      document.getElementById("residuals").scrollIntoView({block: "nearest"});
    });
  }
  drawNext();
})();
