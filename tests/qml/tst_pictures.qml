// SPDX-License-Identifier: MIT
import QtQuick 2.15
import QtTest 1.15

HomeTest {
    id: home

    TestCase {
        name: "pictures"

        function sets(bases, ends) {
            const names = []
            for (const base of bases) {
                for (const end of ends)
                    names.push(base + end)
            }
            return names
        }

        function test_everyPictureIsThereForOneTwoAndThreePixelsToThePoint_data() {
            return [
                { tag: "title bar", names: sets(["head_ic_minimum", "head_ic_maximum", "head_ic_close", "pop_ic_close"],
                                                ["", "_hover", "_selected"])
                                           .concat(["head_ic_maximum_02", "head_ic_maximum_hover_02",
                                                    "head_ic_maximum_selected_02", "help"]) },
                { tag: "states", names: ["state_ic_unmatched", "state_ic_matched", "modify", "update", "conflict", "fail"] },
                { tag: "card", names: sets(["card_ic_upload", "card_ic_update", "card_ic_web", "card_ic_bim",
                                            "card_ic_list"], ["", "_hover", "_selected", "_disable"])
                                      .concat(["card_ic_del", "tab_bt_ic_del_disable", "ic_change", "update2", "upload2",
                                               "card_ic_default"]) },
                { tag: "types", names: sets(["bar_ic_bim", "bar_ic_scene"], ["", "_hover"])
                                       .concat(["bar_ic_default", "bar_ic_hover", "ic_xiala", "ic_xiala_hover"]) },
                { tag: "panel", names: ["ic_refresh", "ic_refresh_hover", "bt_ic_add", "bt_ic_add_hover", "bar_ic_zhankai",
                                        "bar_ic_shouqi", "ic_project", "ic_company"] },
                { tag: "form", names: ["ic_xuanzhong", "pop_box_ic_file", "pop_box_ic_file_hover"] },
                { tag: "conversion", names: sets(["pop_bt_ic_add", "pop_bt_ic_del"], ["", "_hover", "_selected"])
                                            .concat(["pop_bt_ic_prosperity", "pop_bt_ic_translation", "pop_bt_ic_update",
                                                     "card_ic_transition", "pop_bt_ic_defeat"]) },
                { tag: "info card", names: sets(["tab_bt_ic_del"], ["", "_hover", "_selected", "_disable"])
                                           .concat(["card_ic_big", "pop_box_export", "pop_box_ic__export_hover",
                                                    "box_ic_eidt", "box_ic_eidt_hove"]) },
                { tag: "models of a building", names: sets(["tab_bt_ic_fbx", "tab_bt_ic_dwg", "tab_bt_ic_floors",
                                                           "ic_update"], ["", "_hover", "_selected"])
                                                      .concat(["ic_update_disable", "pop_ic_xiazailiebiao",
                                                               "pop_bt_ic_muxing"]) }
            ]
        }

        function test_everyPictureIsThereForOneTwoAndThreePixelsToThePoint(row) {
            compare(screens.missingPictures(row.names), [])
            for (const name of row.names) {
                const width = screens.pictureWidth("qrc:/images/" + name + ".png")
                verify(width > 0, name)
                compare(screens.pictureWidth("qrc:/images/" + name + "@2x.png"), 2 * width, name)
                compare(screens.pictureWidth("qrc:/images/" + name + "@3x.png"), 3 * width, name)
            }
        }

        function test_aPictureThatIsNotThereIsMissed() {
            compare(screens.missingPictures(["nothing"]).length, 3)
        }

        function test_theStatesDifferInShape() {
            const names = ["state_ic_unmatched", "state_ic_matched", "modify", "update", "conflict", "fail"]
            for (let i = 0; i < names.length; ++i) {
                for (let k = i + 1; k < names.length; ++k) {
                    const share = screens.differenceInShape("qrc:/images/" + names[i] + "@2x.png",
                                                            "qrc:/images/" + names[k] + "@2x.png")
                    verify(share > 0.1, names[i] + " and " + names[k] + " differ in " + share)
                }
            }
        }
    }
}
