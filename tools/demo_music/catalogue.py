"""What lies in the demonstration's library: three folders of invented music, in all ten formats."""
from dataclasses import dataclass

from .composer import DORIAN, MAJOR, MINOR, PENTATONIC, Piece


@dataclass(frozen=True)
class Recording:
    path: str  # below the library; its extension says the format
    title: str
    artist: str
    album: str
    cover: str | None  # a function of covers
    piece: Piece
    codec: str | None = None  # where a container takes more than one
    embedded_lyrics: str | None = None
    sidecar_lyrics: str | None = None


def _folk(lead="flute", plucked="guitar"):
    return (("arpeggio", plucked), ("pad", "strings"), ("bassline", "bass"), ("lead", lead))


def _band(lead="bell"):
    return (("chords", "piano"), ("bassline", "bass"), ("drums", ""), ("lead", lead))


_ALONE = (("arpeggio", "piano"), ("lead", "piano"))
_SLOW = (("pad", "strings"), ("lead", "bell"))

_TIDE = """[ti:潮汐来信]
[ar:林屿]
[00:00.00]（前奏）
[00:05.50]潮水把信送到我的窗前
[00:10.80]邮戳上写着一座没有名字的岛
[00:16.20]你说那里的风会认得旧人
[00:21.60]也认得一盏彻夜不灭的灯
[00:27.00]我把回信折成一只纸船
[00:32.40]放进今晚最亮的那道浪
[00:37.00]（尾奏）
"""

_AFTER_RAIN = """[00:00.00]雨停以后
[00:04.20]Puddles keep a piece of sky
[00:08.60]屋檐数完最后一滴
[00:13.00]We hang our coats beside the light
[00:17.40]谁在巷口学吹口哨
[00:21.80]And nobody is late tonight
[00:26.20]雨停以后，城市轻了一点
"""

_LIGHTHOUSE = """夜里十二点，海面没有声音
灯塔看守人数着来往的船
一盏给归人，一盏给远行
还有一盏，留给不肯睡的海鸥

天亮之前他熄了灯
把整片海还给太阳
"""

_SNOWLINE = """雪线以上，没有人说话
脚印是唯一的句子
写到山口就停下
等风来替我读完
"""

_ORBIT = """[00:00.00]One slow orbit round the table
[00:06.00]Two cups cooling in the light
[00:12.00]If the morning has a handle
[00:18.00]We can carry it till night
[00:24.00]One slow orbit, one slow orbit
"""

LIBRARY = (
    Recording("民谣与后摇/南岸以南/01 灯塔看守人.mp3", "灯塔看守人", "林屿", "南岸以南", "sunset",
              Piece(45, MINOR, (0, 5, 2, 6), 76, 40, _folk(), 1), embedded_lyrics=_LIGHTHOUSE),
    Recording("民谣与后摇/南岸以南/02 潮汐来信.flac", "潮汐来信", "林屿", "南岸以南", "sunset",
              Piece(48, MAJOR, (0, 4, 5, 3), 88, 38, _folk(), 4), sidecar_lyrics=_TIDE),
    Recording("民谣与后摇/白昼之北/雪线以上.m4a", "雪线以上", "沈知远", "白昼之北", "snow",
              Piece(50, DORIAN, (0, 3, 0, 6), 66, 34, _SLOW, 7), codec="aac", embedded_lyrics=_SNOWLINE),
    Recording("民谣与后摇/白昼之北/返乡的门.caf", "返乡的门", "沈知远", "白昼之北", None,
              Piece(43, MINOR, (0, 3, 5, 4), 80, 32, _ALONE, 9), codec="alac"),
    Recording("民谣与后摇/墨色未干.wav", "墨色未干", "顾北辰", "纸上山河", "ink",
              Piece(50, PENTATONIC, (0, 3, 1, 4), 72, 30, (("arpeggio", "guitar"), ("lead", "flute")), 11)),
    Recording("民谣与后摇/梯田.ogg", "梯田", "云上乐队", "绿色笔记", "terraces",
              Piece(47, MAJOR, (0, 3, 5, 4), 104, 36, _folk("bell"), 14)),
    Recording("City Lights/Slow Orbit.mp3", "Slow Orbit", "Mira Halden", "Satellites for Two", "planet",
              Piece(45, DORIAN, (0, 3, 6, 4), 70, 36, _SLOW + (("arpeggio", "piano"),), 17),
              embedded_lyrics=_ORBIT),
    Recording("City Lights/Northbound.aiff", "Northbound", "Mira Halden", "Satellites for Two", "planet",
              Piece(48, MAJOR, (0, 5, 1, 4), 112, 30, _band("flute"), 19)),
    Recording("City Lights/Paper Lanterns.flac", "Paper Lanterns", "Odd Harbour", "Low Tide Letters", "hills",
              Piece(46, MAJOR, (3, 4, 2, 5), 96, 34, _band(), 23)),
    Recording("City Lights/Untitled Sketch No. 4.aif", "Untitled Sketch No. 4", "Odd Harbour", "Low Tide Letters",
              None, Piece(44, MINOR, (0, 5, 3, 6), 84, 25, _ALONE, 26)),
    Recording("City Lights/Geometry of Rain.m4a", "Geometry of Rain (Live at the Old Boathouse, Second Night)",
              "The Quiet Compass", "Right Angles, Collected Recordings", "shapes",
              Piece(49, DORIAN, (0, 1, 3, 4), 92, 36, _band("bell"), 29), codec="alac"),
    Recording("City Lights/午夜电台不打烊.oga", "午夜电台不打烊", "霓虹便利店", "城市夜行指南", "bokeh",
              Piece(47, MAJOR, (3, 2, 1, 0), 100, 34, _band("flute"), 31)),
    Recording("雨天/一万朵云的下午.aac", "一万朵云的下午", "阿禾、小满", "夏日存档", "mandala",
              Piece(48, PENTATONIC, (0, 2, 3, 1), 90, 30, _folk("flute", "piano"), 37)),
    Recording("雨天/窗台.mp3", "窗台", "阿禾、小满", "夏日存档", "window",
              Piece(45, MAJOR, (0, 2, 3, 4), 78, 32, _ALONE, 40)),
    Recording("雨天/雨停以后.flac", "雨停以后", "林屿、Mira Halden", "两地书", "rain",
              Piece(46, MINOR, (0, 2, 5, 4), 82, 30, _folk("piano"), 43), sidecar_lyrics=_AFTER_RAIN),
    Recording("雨天/Letters I Never Sent.ogg", "Letters I Never Sent", "Odd Harbour", "Low Tide Letters", "flat",
              Piece(43, MAJOR, (0, 5, 3, 4), 74, 28, _SLOW, 46)),
)
