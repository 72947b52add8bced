"use strict";

// Times come in UTC; people want their own. A narrow table breaks them between day and hour, never within.
function showOwnTimes() {
    const format = new Intl.DateTimeFormat("sv-SE", { dateStyle: "short", timeStyle: "short" });
    for (const element of document.querySelectorAll("time")) {
        const parts = format.format(new Date(element.dateTime)).split(" ").map(text => {
            const part = document.createElement("span");
            part.textContent = text;
            return part;
        });
        element.title = element.textContent;
        element.replaceChildren(parts[0], " ", parts[1]);
    }
}

// A long list can be searched by name, a short one is seen at a glance.
function offerSearch() {
    const bar = document.querySelector(".find");
    const rows = [...document.querySelectorAll(".projects tbody tr")];
    if (!bar || rows.length <= 8)
        return;
    const field = bar.querySelector("input");
    const output = bar.querySelector("output");
    const names = rows.map(row => row.querySelector("a").textContent.toLocaleLowerCase());
    field.addEventListener("input", () => {
        const key = field.value.trim().toLocaleLowerCase();
        let found = 0;
        rows.forEach((row, index) => {
            row.hidden = !names[index].includes(key);
            found += row.hidden ? 0 : 1;
        });
        output.textContent = key === "" ? "" : found === 0 ? "没有找到，换个名称试试" : `找到 ${found} 个`;
    });
    bar.hidden = false;
}

showOwnTimes();
offerSearch();
